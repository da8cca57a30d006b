#include "desk/drawing/PictureFiles.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace desk::drawing {
namespace {

/// Returns the end of a picture's file name for a word: letters and digits of it.
std::string nameOf(std::string word) {
  if (word.empty()) return "opening";
  for (char& character : word) {
    if (std::isalnum(static_cast<unsigned char>(character)) == 0) character = '-';
  }
  return word.substr(0, 40);
}

}  // namespace

PictureFiles::PictureFiles(const std::filesystem::path& directory,
                           const std::filesystem::path& receiver, SkinFile skin)
    : directory_(directory),
      pictures_(receiver),
      drawing_(
          std::move(skin),
          [this](const std::string& path) -> std::optional<std::string> {
            const auto picture = pictures_.at(path);
            return picture ? std::optional(dataUrlOf(*picture)) : std::nullopt;
          },
          [this] { pictures_.changeScreen(); }) {
  std::filesystem::create_directories(directory);
}

void PictureFiles::write(const Frame& frame) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "%03d-", ++count_);
  const std::filesystem::path file =
      directory_ / (number.data() + nameOf(frame.word.text) + ".svg");
  std::ofstream stream(file, std::ios::binary);
  stream << drawing_.draw(frame, timeoutOf(frame));
  if (!stream.flush()) throw std::runtime_error("cannot write '" + file.string() + "'");
}

}  // namespace desk::drawing
