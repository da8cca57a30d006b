#include "PictureFiles.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/Error.h"
#include "native/Reading.h"

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

/// Returns the end of a picture's file name for a word: letters and digits of it.
std::string nameOf(std::string word) {
  if (word.empty()) return "opening";
  for (char& character : word) {
    if (std::isalnum(static_cast<unsigned char>(character)) == 0) character = '-';
  }
  return word.substr(0, 40);
}

}  // namespace

std::optional<std::string> dataUrlOf(const native::Root& receiver, const std::string& path) {
  try {
    std::string bytes(kLargestPicture, '\0');
    bytes.resize(native::readSome(receiver.open(path).number(), bytes.data(), bytes.size(), path));
    for (const auto& [begin, type] : kTypes) {
      if (bytes.starts_with(begin)) return std::string("data:") + type + ";base64," + base64(bytes);
    }
  } catch (const host::Error&) {
    // What cannot be read is not there.
  }
  return std::nullopt;
}

PictureFiles::PictureFiles(const std::filesystem::path& directory,
                           const std::filesystem::path& receiver, SkinFile skin)
    : directory_(directory),
      receiver_(receiver),
      drawing_(std::move(skin),
               [this](const std::string& path) { return dataUrlOf(receiver_, path); }) {
  std::filesystem::create_directories(directory);
}

void PictureFiles::write(const nlohmann::ordered_json& frame) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%03d-", ++count_);
  const std::filesystem::path file =
      directory_ / (number.data() + nameOf(frame.at("key")) + ".svg");
  const int timeout = frame.value("timeout", 0);
  std::ofstream stream(file, std::ios::binary);
  stream << drawing_.draw(frame, timeout > 0 ? std::optional(timeout) : std::nullopt);
  if (!stream.flush()) throw std::runtime_error("cannot write '" + file.string() + "'");
}

}  // namespace desk::drawing
