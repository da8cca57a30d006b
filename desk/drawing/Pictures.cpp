#include "desk/drawing/Pictures.h"

#include <string_view>

#include "base/Files.h"
#include "base/SystemError.h"

namespace desk::drawing {
namespace {

/// No picture of a skin is larger, in bytes.
constexpr std::size_t kLargestPicture = 1024 * 1024;

/// The types of pictures by how their files begin.
constexpr struct {
  std::string_view begin;
  const char* type;
} kTypes[] = {
    {"\x89PNG\r\n", "image/png"},
    {"\xff\xd8\xff", "image/jpeg"},
    {"GIF8", "image/gif"},
};

/// Returns bytes in base64 (RFC 4648).
std::string base64(std::string_view bytes) {
  constexpr const char* kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    unsigned bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      bits = bits << 8U | (index < group.size() ? static_cast<unsigned char>(group[index]) : 0U);
    }
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= group.size() ? kDigits[bits >> (18 - 6 * digit) & 0x3FU] : '=';
    }
  }
  return text;
}

}  // namespace

std::optional<PictureFile> readPicture(const base::Root& receiver, const std::string& path) {
  try {
    const base::Descriptor file = receiver.open(path);
    std::string bytes(kLargestPicture + 1, '\0');
    bytes.resize(base::readSome(file.number(), bytes.data(), bytes.size(), path));
    if (bytes.size() > kLargestPicture) return std::nullopt;
    for (const auto& [begin, type] : kTypes) {
      if (bytes.starts_with(begin)) return PictureFile{std::move(bytes), type};
    }
  } catch (const base::SystemError&) {
    // What cannot be read is not there.
  }
  return std::nullopt;
}

std::string dataUrlOf(const PictureFile& picture) {
  return "data:" + picture.type + ";base64," + base64(picture.content);
}

}  // namespace desk::drawing
