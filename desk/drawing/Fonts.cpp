#include "desk/drawing/Fonts.h"

#include <fcntl.h>
#include <ft2build.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <new>
#include <stdexcept>
#include FT_FREETYPE_H

#include "base/Files.h"
#include "base/SystemError.h"

namespace desk::drawing {
namespace {

/// Takes the first character off a text and returns it.
char32_t takeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  char32_t character = length == 1 ? first : first & (0x7FU >> length);
  for (const char byte : text.substr(1, length - 1)) {
    character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  text.remove_prefix(std::min(length, text.size()));
  return character;
}

}  // namespace

std::string plainName(const std::string& name) {
  std::string plain = name;
  std::ranges::replace_if(
      plain, [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) == 0; },
      '_');
  return plain;
}

struct Fonts::Library {
  Library() {
    if (FT_Init_FreeType(&handle) != 0) throw std::bad_alloc();
  }
  ~Library() { FT_Done_FreeType(handle); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  FT_Library handle = nullptr;
};

/// No font is larger, in bytes.
constexpr std::size_t kLargestFont = 8 * 1024 * 1024;

/// Reads a font's file. Raises std::runtime_error for one that is too large to be a font, and
/// base::SystemError.
std::string readFont(const std::filesystem::path& path) {
  const base::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) throw base::SystemError(errno, path);
  auto content = base::readAtMost(file.number(), kLargestFont, path);
  if (!content) {
    throw std::runtime_error("cannot use the font '" + path.string() + "': it is too large");
  }
  return std::move(*content);
}

/// A font's file, and the widths of its characters as far as they have been asked for. Lengths are
/// those of a font whose size is 1.
struct Fonts::Face {
  /// Raises std::runtime_error for a file that is no font whose size can be chosen, and
  /// base::SystemError for one that cannot be read.
  Face(FT_Library library, const std::filesystem::path& file)
      : content(std::make_shared<const std::string>(readFont(file))) {
    const auto* bytes = reinterpret_cast<const FT_Byte*>(content->data());
    const auto size = static_cast<FT_Long>(content->size());
    if (FT_New_Memory_Face(library, bytes, size, 0, &handle) != 0) {
      throw std::runtime_error("cannot use the font '" + file.string() + "'");
    }
    if (handle->units_per_EM == 0) {
      FT_Done_Face(handle);
      throw std::runtime_error("the font '" + file.string() + "' has one size alone");
    }
  }
  ~Face() { FT_Done_Face(handle); }
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  double ascent() const { return unit() * handle->ascender; }
  double height() const { return unit() * (handle->ascender - handle->descender); }

  double widthOf(char32_t character) {
    const auto [known, is_new] = widths.try_emplace(character);
    if (is_new && FT_Load_Char(handle, character, FT_LOAD_NO_SCALE) == 0) {
      known->second = unit() * static_cast<double>(handle->glyph->metrics.horiAdvance);
    }
    return known->second;
  }

  double unit() const { return 1.0 / handle->units_per_EM; }

  std::shared_ptr<const std::string> content;
  FT_Face handle = nullptr;
  std::map<char32_t, double> widths;
};

Fonts::Fonts(const SkinSettings& settings, const std::filesystem::path& directory, Notices& notices)
    : library_(std::make_unique<Library>()),
      usual_(std::make_unique<Face>(library_->handle, STOWLINE_FONT)) {
  for (const auto& [name, file] : settings.fonts) {
    try {
      own_.emplace(plainName(name), std::make_unique<Face>(library_->handle, directory / file));
    } catch (const base::SystemError& error) {
      notices.add(std::string("cannot use a font: ") + error.what());
    } catch (const std::runtime_error& error) {
      notices.add(error.what());
    }
  }
}

Fonts::~Fonts() = default;

std::shared_ptr<const std::string> Fonts::contentOf(const std::string& name) const {
  return faceOf(name).content;
}

Fonts::Face& Fonts::faceOf(const std::string& name) const {
  const auto own = own_.find(plainName(name));
  return own == own_.end() ? *usual_ : *own->second;
}

double Fonts::widthOf(std::string_view text, const SkinFont& font) {
  Face& face = faceOf(font.name);
  double width = 0;
  while (!text.empty()) width += face.widthOf(takeCharacter(text));
  return width * font.size;
}

double Fonts::lineHeightOf(const SkinFont& font) {
  return faceOf(font.name).height() * font.size;
}

double Fonts::baselineOf(const SkinFont& font) {
  return faceOf(font.name).ascent() * font.size;
}

std::vector<std::string> Fonts::linesOf(std::string_view text, const TextLayout& layout,
                                        double width) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    if (layout.wraps) {
      for (std::string& part : wrapped(line, layout.font, width)) lines.push_back(std::move(part));
    } else {
      lines.emplace_back(line);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// Cuts one line into lines.
std::vector<std::string> Fonts::wrapped(std::string_view line, const SkinFont& font, double width) {
  Face& face = faceOf(font.name);
  std::vector<std::string> lines;
  while (!line.empty()) {
    std::string_view rest = line;
    double used = face.widthOf(takeCharacter(rest)) * font.size;
    while (!rest.empty()) {
      std::string_view next = rest;
      used += face.widthOf(takeCharacter(next)) * font.size;
      if (used > width) break;
      rest = next;
    }
    std::size_t end = line.size() - rest.size();
    if (!rest.empty()) {
      const std::size_t blank = line.substr(0, end + 1).rfind(' ');
      if (blank != std::string_view::npos && blank > line.find_first_not_of(' ')) end = blank;
    }
    const std::size_t last = line.substr(0, end).find_last_not_of(' ');
    lines.emplace_back(line.substr(0, last == std::string_view::npos ? end : last + 1));
    line.remove_prefix(end);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  }
  if (lines.empty()) lines.emplace_back();
  return lines;
}

}  // namespace desk::drawing
