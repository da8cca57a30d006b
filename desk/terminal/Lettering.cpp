#include "desk/terminal/Lettering.h"

#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <numeric>
#include <span>

#include "base/Escape.h"

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
  while (length < text.size() && base::isContinuation(text[length])) ++length;
  return length;
}

/// Characters that are not to be seen themselves or that change how others are: a name with them
/// would not look like what it is. Unicode 15's general category Cf, and the letters that are
/// blank.
constexpr struct {
  wchar_t first;
  wchar_t last;
} kInvisible[] = {
    {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x0600, 0x0605},   {0x061C, 0x061C},
    {0x06DD, 0x06DD},   {0x070F, 0x070F},   {0x0890, 0x0891},   {0x08E2, 0x08E2},
    {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180E, 0x180E},   {0x200B, 0x200F},
    {0x202A, 0x202E},   {0x2060, 0x206F},   {0x3164, 0x3164},   {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0},   {0xFFF9, 0xFFFB},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD},
    {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0001, 0xE007F},
};

bool isInvisible(wchar_t character) {
  return std::ranges::any_of(kInvisible, [character](const auto& range) {
    return character >= range.first && character <= range.last;
  });
}

/// Returns how many columns the character takes in the process's locale; -1 when it cannot be
/// shown.
int columnsOf(std::string_view character) {
  wchar_t wide = 0;
  std::mbstate_t state{};
  const std::size_t length = std::mbrtowc(&wide, character.data(), character.size(), &state);
  return length == character.size() && !isInvisible(wide) ? wcwidth(wide) : -1;
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

/// Cuts one line into lines of at most `columns`: at blanks, which go, or within a word that has a
/// line of its own.
void wrapLine(std::vector<std::string>& lines, const std::vector<Glyph>& glyphs, int columns) {
  const Glyph blank = {" ", 1};
  const std::span<const Glyph> all(glyphs);
  std::size_t start = 0;
  do {
    std::size_t end = start < all.size() ? start + fitting(glyphs, start, columns) : start;
    std::size_t next = end;
    if (end < all.size()) {
      std::size_t cut = end;
      while (cut > start && all[cut] != blank) --cut;
      next = cut;
      while (cut > start && all[cut - 1] == blank) --cut;
      while (next < all.size() && all[next] == blank) ++next;
      if (cut > start) {
        end = cut;
      } else {
        next = end;
      }
    }
    lines.push_back(joined(all.subspan(start, end - start)));
    start = next;
  } while (start < all.size());
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
    } else if (columns == 0 && !glyphs.empty()) {
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
  int used = columnsOf(shown);
  if (used <= columns) return joined(shown);
  for (; !shown.empty() && used > columns - 1; shown.pop_back()) used -= shown.back().columns;
  return joined(shown) + std::string(columns > 0 ? either("…", "~") : "");
}

std::string Lettering::cutFront(std::string_view text, int columns) const {
  const std::vector<Glyph> shown = glyphs(text);
  int used = columnsOf(shown);
  if (used <= columns) return joined(shown);
  std::size_t start = 0;
  for (; start < shown.size() && used > columns - 1; ++start) used -= shown[start].columns;
  return std::string(columns > 0 ? either("…", "~") : "") + joined(std::span(shown).subspan(start));
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
