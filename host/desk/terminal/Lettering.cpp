#include "Lettering.h"

#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <numeric>

namespace desk::terminal {
namespace {

constexpr std::size_t kTabColumns = 4;

void addEscaped(std::vector<Glyph>& glyphs, std::string_view bytes) {
  constexpr const char* kDigits = "0123456789abcdef";
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    for (const char shown : {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0x0FU]}) {
      glyphs.push_back({std::string(1, shown), 1});
    }
  }
}

/// Returns how many bytes the first character of `text`, which is valid UTF-8, has.
std::size_t lengthOfFirst(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
    ++length;
  }
  return length;
}

/// Returns how many columns the character takes in the process's locale; -1 when it cannot be
/// shown.
int columnsOf(std::string_view character) {
  wchar_t wide = 0;
  std::mbstate_t state{};
  const std::size_t length = std::mbrtowc(&wide, character.data(), character.size(), &state);
  return length == character.size() ? wcwidth(wide) : -1;
}

int columnsOf(const std::vector<Glyph>& glyphs) {
  return std::accumulate(glyphs.begin(), glyphs.end(), 0,
                         [](int sum, const Glyph& glyph) { return sum + glyph.columns; });
}

template <class Glyphs>
std::string joined(const Glyphs& glyphs) {
  std::string text;
  for (const Glyph& glyph : glyphs) text += glyph.bytes;
  return text;
}

/// Returns how many glyphs from `start` on go into a line of `columns`; at least one, so that every
/// line gets on.
std::size_t fitting(const std::vector<Glyph>& glyphs, std::size_t start, int columns) {
  std::size_t end = start;
  for (int used = 0; end < glyphs.size(); ++end) {
    used += glyphs[end].columns;
    if (used > columns) break;
  }
  return std::max<std::size_t>(end - start, 1);
}

/// Cuts one line into lines of at most `columns`, at blanks where there are some.
void wrapLine(std::vector<std::string>& lines, const std::vector<Glyph>& glyphs, int columns) {
  std::size_t start = 0;
  do {
    std::size_t count = start < glyphs.size() ? fitting(glyphs, start, columns) : 0;
    std::size_t next = start + count;
    if (next < glyphs.size()) {
      const auto first = glyphs.begin() + static_cast<std::ptrdiff_t>(start);
      const auto line_end = glyphs.begin() + static_cast<std::ptrdiff_t>(next) + 1;
      const auto blank = std::find(std::make_reverse_iterator(line_end),
                                   std::make_reverse_iterator(first), Glyph{" ", 1});
      if (blank.base() - first > 1) {
        next = static_cast<std::size_t>(blank.base() - glyphs.begin());
        count = next - start - 1;
      }
    }
    lines.push_back(
        joined(std::vector<Glyph>(glyphs.begin() + static_cast<std::ptrdiff_t>(start),
                                  glyphs.begin() + static_cast<std::ptrdiff_t>(start + count))));
    start = next;
  } while (start < glyphs.size());
}

}  // namespace

Lettering Lettering::ofLocale() {
  std::setlocale(LC_CTYPE, "");
  return Lettering(std::string_view(nl_langinfo(CODESET)) == "UTF-8" ? Charset::utf8
                                                                     : Charset::ascii);
}

std::vector<Glyph> Lettering::glyphs(std::string_view text) const {
  std::vector<Glyph> glyphs;
  while (!text.empty()) {
    const std::string_view character = text.substr(0, lengthOfFirst(text));
    text.remove_prefix(character.size());
    const char first = character.front();
    if (first >= ' ' && first <= '~') {
      glyphs.push_back({std::string(character), 1});
      continue;
    }
    if (first == '\t') {
      glyphs.insert(glyphs.end(), kTabColumns, {" ", 1});
      continue;
    }
    const int columns = charset_ == Charset::utf8 ? columnsOf(character) : -1;
    if (columns > 0) {
      glyphs.push_back({std::string(character), columns});
    } else if (columns == 0 && first != '\0' && !glyphs.empty()) {
      glyphs.back().bytes += character;
    } else {
      addEscaped(glyphs, character);
    }
  }
  return glyphs;
}

int Lettering::columns(std::string_view text) const {
  return columnsOf(glyphs(text));
}

std::string Lettering::cut(std::string_view text, int columns) const {
  std::vector<Glyph> shown = glyphs(text);
  if (columnsOf(shown) <= columns) return joined(shown);
  while (!shown.empty() && columnsOf(shown) > columns - 1) shown.pop_back();
  return joined(shown) + std::string(columns > 0 ? either("…", "~") : "");
}

std::vector<std::string> Lettering::wrapped(std::string_view text, int columns) const {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    wrapLine(lines, glyphs(text.substr(0, end)), columns);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

}  // namespace desk::terminal
