#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desk::terminal {

/// What one place of the terminal shows: a character with the marks upon it, as bytes, and how many
/// columns it takes (1 or 2).
struct Glyph {
  std::string bytes;
  int columns;

  friend bool operator==(const Glyph&, const Glyph&) = default;
};

/// How text is put onto a terminal: as UTF-8, or with every other byte than ASCII escaped where the
/// locale knows no better. Texts that go in are valid UTF-8; UTF-8 that comes out asks for
/// setlocale(3) with a UTF-8 locale.
class Lettering {
 public:
  enum class Charset { ascii, utf8 };

  explicit Lettering(Charset charset) : charset_(charset) {}

  /// Makes the user's locale for characters (LC_CTYPE) the process's and returns its lettering.
  static Lettering ofLocale();

  /// Returns the text's glyphs. What cannot be shown stands as "\xNN", byte by byte; a tab as
  /// blanks.
  std::vector<Glyph> glyphs(std::string_view text) const;

  /// Returns how many columns the text takes.
  int columns(std::string_view text) const;

  /// Returns the text with its end cut off and marked so, if it takes more columns than `columns`.
  std::string cut(std::string_view text, int columns) const;

  /// Returns the text with its beginning cut off and marked so, if it takes more columns than
  /// `columns`.
  std::string cutFront(std::string_view text, int columns) const;

  /// Returns the text as lines of at most `columns`: cut at its line breaks, and then at blanks,
  /// which go, or within a word that is longer than a line.
  std::vector<std::string> wrapped(std::string_view text, int columns) const;

  /// Returns whichever of the two this terminal can show.
  std::string_view either(std::string_view utf8, std::string_view ascii) const {
    return charset_ == Charset::utf8 ? utf8 : ascii;
  }

 private:
  Charset charset_;
};

}  // namespace desk::terminal
