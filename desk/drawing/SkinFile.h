#pragma once

#include <filesystem>

#include "desk/skin/Skin.h"

namespace desk::drawing {

/// A skin that has been read.
struct SkinFile {
  Skin skin;
  std::filesystem::path directory;  ///< where its fonts are
  Notices notices;
};

/// Reads a skin's file, the sample skin for pictures of 1280x720 where `file` is empty. Raises
/// SkinError, with the file's name and the place in it, for a fault, and base::SystemError
/// when it cannot be read.
SkinFile readSkin(const std::filesystem::path& file);

}  // namespace desk::drawing
