#include "base/Escape.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace base {
namespace {

/// Returns the length of the valid UTF-8 sequence at `start`, 0 when there is none (RFC 3629).
std::size_t sequenceLength(const std::string& bytes, std::size_t start) {
  const auto at = [&](std::size_t offset) {
    return start + offset < bytes.size() ? static_cast<unsigned char>(bytes[start + offset]) : 0U;
  };
  const unsigned first = at(0);
  const unsigned second = at(1);
  if (first < 0x80) return 1;
  std::size_t length = 0;
  unsigned least =
      0x80;  // what the second byte may be, which rules out overlong and surrogate forms
  unsigned most = 0xBF;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    if (first == 0xE0) least = 0xA0;
    if (first == 0xED) most = 0x9F;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    if (first == 0xF0) least = 0x90;
    if (first == 0xF4) most = 0x8F;
  }
  if (length == 0 || second < least || second > most) return 0;
  for (std::size_t offset = 2; offset < length; ++offset) {
    if (!isContinuation(static_cast<char>(at(offset)))) return 0;
  }
  return length;
}

std::string escaped(unsigned char byte) {
  constexpr const char* kDigits = "0123456789abcdef";
  return std::string("\\x") + kDigits[byte >> 4U] + kDigits[byte & 0x0FU];
}

/// Whether the byte is a character of ASCII that is shown as it is.
bool isPlain(char byte) {
  return byte >= ' ' && byte <= '~';
}

struct CodePoints {
  char32_t first;
  char32_t last;
};

/// The characters that are not seen, or change how the rest is seen. In the Unicode Character
/// Database (14.0) they have the General_Category Cc, Zl or Zp, or the property
/// Default_Ignorable_Code_Point, which all of Bidi_Control have, too; annotations and the Braille
/// pattern of no dots have neither.
constexpr CodePoints kHidden[] = {
    {0x0000, 0x001F},    // Cc
    {0x007F, 0x009F},    // Cc
    {0x00AD, 0x00AD},    // soft hyphen
    {0x034F, 0x034F},    // combining grapheme joiner
    {0x061C, 0x061C},    // Bidi_Control
    {0x115F, 0x1160},    // Hangul fillers
    {0x17B4, 0x17B5},    // Khmer vowels that are not shown
    {0x180B, 0x180F},    // Mongolian variation selectors and separator
    {0x200B, 0x200F},    // of no width; Bidi_Control
    {0x2028, 0x202E},    // Zl, Zp; Bidi_Control
    {0x2060, 0x206F},    // of no width; Bidi_Control
    {0x2800, 0x2800},    // Braille pattern of no dots
    {0x3164, 0x3164},    // Hangul filler
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFA0, 0xFFA0},    // Hangul filler
    {0xFFF0, 0xFFFB},    // reserved; annotations
    {0x1BCA0, 0x1BCA3},  // shorthand format controls
    {0x1D173, 0x1D17A},  // musical format controls
    {0xE0000, 0xE0FFF},  // tags, variation selectors
};

/// Returns the code point of one character.
char32_t codePointOf(std::string_view character) {
  constexpr unsigned kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t point = static_cast<unsigned char>(character.front()) & kLeadBits[character.size()];
  for (const char byte : character.substr(1)) {
    point = point << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  return point;
}

bool isHidden(std::string_view character) {
  const char32_t point = codePointOf(character);
  const auto* const range = std::ranges::lower_bound(kHidden, point, {}, &CodePoints::last);
  return range != std::end(kHidden) && range->first <= point;
}

/// Whether XML 1.0 allows no such character.
bool isNoXml(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  const bool is_space = first == '\t' || first == '\n' || first == '\r';
  return (first < 0x20 && !is_space) || character == "\uFFFE" || character == "\uFFFF";
}

/// Returns the bytes as text, and what `is_escaped` of its characters as "\xNN", too.
template <class IsEscaped>
std::string shown(const std::string& bytes, IsEscaped is_escaped) {
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size();) {
    const auto* const plain = bytes.data() + position;
    const auto* const end = std::find_if_not(plain, bytes.data() + bytes.size(), isPlain);
    text.append(plain, end);
    position = static_cast<std::size_t>(end - bytes.data());
    if (position == bytes.size()) break;
    const std::size_t length = sequenceLength(bytes, position);
    const std::string_view character(bytes.data() + position, std::max<std::size_t>(length, 1));
    if (length > 0 && !is_escaped(character)) {
      text += character;
    } else {
      for (const char byte : character) text += escaped(static_cast<unsigned char>(byte));
    }
    position += character.size();
  }
  return text;
}

}  // namespace

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t lengthOfWhole(const std::string& bytes) {
  constexpr std::size_t kLongest = 4;
  for (std::size_t back = 1; back < kLongest && back <= bytes.size(); ++back) {
    const std::size_t start = bytes.size() - back;
    if (isContinuation(bytes[start])) continue;
    const auto first = static_cast<unsigned char>(bytes[start]);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
    return length > back ? start : bytes.size();
  }
  return bytes.size();
}

std::string escapeInvalidUtf8(const std::string& bytes) {
  return shown(bytes, [](std::string_view /*character*/) { return false; });
}

std::string escapeControls(const std::string& bytes) {
  return shown(bytes, isHidden);
}

std::string escapeForXml(const std::string& bytes) {
  return shown(bytes, isNoXml);
}

}  // namespace base
