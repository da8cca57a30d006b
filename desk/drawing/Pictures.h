#pragma once

#include <optional>
#include <string>

#include "base/Root.h"

namespace desk::drawing {

/// The file of a picture.
struct PictureFile {
  std::string content;
  std::string type;  ///< "image/png", "image/jpeg" or "image/gif"
};

/// Reads a picture of the receiver; nothing where there is none.
std::optional<PictureFile> readPicture(const base::Root& receiver, const std::string& path);

/// Returns a picture as a data URL (RFC 2397).
std::string dataUrlOf(const PictureFile& picture);

}  // namespace desk::drawing
