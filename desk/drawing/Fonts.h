#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "desk/skin/Skin.h"

namespace desk::drawing {

/// Returns a font's name as it can stand everywhere: its letters and digits, and "_" for the rest.
std::string plainName(const std::string& name);

/// The fonts of a skin, to measure text with. Text is valid UTF-8.
class Fonts {
 public:
  /// `directory`: where the files of the skin's fonts are, which are read here once. The usual font
  /// stands for one whose file is not there or is no font, and that is noticed. Raises
  /// std::runtime_error where the usual one is not installed.
  Fonts(const SkinSettings& settings, const std::filesystem::path& directory, Notices& notices);
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

  /// Returns the content of a font's file by the font's plain name, that of the usual one for any
  /// other. May be called from any thread.
  std::shared_ptr<const std::string> contentOf(const std::string& name) const;

 private:
  struct Face;
  struct Library;

  Face& faceOf(const std::string& name) const;
  std::vector<std::string> wrapped(std::string_view line, const SkinFont& font, double width);

  std::unique_ptr<Library> library_;
  std::unique_ptr<Face> usual_;
  std::map<std::string, std::unique_ptr<Face>, std::less<>> own_;  ///< the skin's, by plain name
};

}  // namespace desk::drawing
