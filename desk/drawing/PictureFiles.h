#pragma once

#include <filesystem>

#include "desk/drawing/Drawing.h"
#include "desk/drawing/Pictures.h"
#include "desk/drawing/SkinFile.h"

namespace desk::drawing {

/// Writes the pictures of frames into a directory, one SVG file each: "001-KEY.svg" and so on.
class PictureFiles {
 public:
  /// `receiver`: where the skin's pictures are found. Makes the directory. Raises
  /// std::filesystem::filesystem_error, and base::SystemError where there is no receiver.
  PictureFiles(const std::filesystem::path& directory, const std::filesystem::path& receiver,
               SkinFile skin);

  /// Writes the picture of a frame. Raises std::runtime_error when it cannot be written.
  void write(const Frame& frame);

  /// Returns what there is to say about the skin so far.
  const Notices& notices() const { return drawing_.notices(); }

 private:
  std::filesystem::path directory_;
  Pictures pictures_;
  Drawing drawing_;
  int count_ = 0;
};

}  // namespace desk::drawing
