#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "skin/Skin.h"

namespace desk::drawing {

/// The fonts of a skin, to measure text with. Text is valid UTF-8.
class Fonts {
 public:
  /// `directory`: where the files of the skin's fonts are. A font whose file is not there is taken
  /// to be the usual one. Raises std::runtime_error when a file is no font.
  Fonts(const SkinSettings& settings, const std::filesystem::path& directory);
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  /// Returns how wide a line of text is, in pixels.
  double widthOf(std::string_view text, const SkinFont& font);

  /// Returns how high a line is, and how far below its top its letters stand, in pixels.
  double lineHeightOf(const SkinFont& font);
  double baselineOf(const SkinFont& font);

  /// Returns the lines of `text`, none wider than `width` pixels where `layout` wraps them: a line
  /// breaks at blanks, which go, or within a word that is too long for a line.
  std::vector<std::string> linesOf(std::string_view text, const TextLayout& layout, double width);

  /// Returns the file of a font, that of the usual one for a font whose file is not there.
  std::filesystem::path fileOf(const std::string& name) const;

 private:
  struct Face;
  struct Library;

  Face& faceOf(const std::string& name);
  std::vector<std::string> wrapped(std::string_view line, const SkinFont& font, double width);

  std::unique_ptr<Library> library_;
  std::map<std::string, std::filesystem::path, std::less<>> files_;
  std::map<std::filesystem::path, std::unique_ptr<Face>> faces_;
};

}  // namespace desk::drawing
