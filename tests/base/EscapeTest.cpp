#include <gtest/gtest.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "base/Escape.h"

namespace base {
namespace {

/// Returns the code point in UTF-8 of `length` bytes, whether or not it is the proper length.
std::string encoded(unsigned point, int length) {
  if (length == 1) return {static_cast<char>(point)};
  constexpr unsigned kLead[] = {0, 0, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};
  std::string bytes;
  for (int rest = length - 1; rest >= 0; --rest) {
    const unsigned bits = point >> (6 * rest);
    bytes += static_cast<char>(bytes.empty() ? kLead[length] | bits : 0x80U | (bits & 0x3FU));
  }
  return bytes;
}

std::string escaped(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned>(byte) & 0xFFU);
    text += code;
  }
  return text;
}

/// A range of code points with the number of bytes that each takes.
struct Range {
  unsigned first;
  unsigned last;
  int length;
};

constexpr Range kValid[] = {
    {0x00, 0x7F, 1},       {0x80, 0x7FF, 2},      {0x800, 0xD7FF, 3},      {0xE000, 0xFFFF, 3},
    {0x10000, 0x3FFFF, 4}, {0x40000, 0xFFFFF, 4}, {0x100000, 0x10FFFF, 4},
};

constexpr Range kInvalid[] = {
    {0x00, 0x7F, 2},           // overlong
    {0x00, 0x7FF, 3},          // overlong
    {0xD800, 0xDFFF, 3},       // surrogates
    {0x00, 0xFFFF, 4},         // overlong
    {0x110000, 0x1FFFFF, 4},   // beyond Unicode
    {0x200000, 0x3FFFFFF, 5},  // no longer UTF-8
    {0x4000000, 0x7FFFFFFF, 6},
};

/// Calls `check` with the code points at and near both ends of `range`.
template <class Check>
void atTheEnds(const Range& range, const Check& check) {
  const unsigned step = (range.last - range.first) / 3;
  for (const unsigned point : {range.first, range.first + 1, range.first + step, range.last - step,
                               range.last - 1, range.last}) {
    check(encoded(point, range.length));
  }
}

TEST(Escape, ValidUtf8StaysAsItIs) {
  for (const Range& range : kValid) {
    atTheEnds(range, [](const std::string& bytes) {
      EXPECT_EQ(escapeInvalidUtf8(bytes), bytes) << escaped(bytes);
      EXPECT_EQ(escapeInvalidUtf8("a" + bytes + "b"), "a" + bytes + "b") << escaped(bytes);
    });
  }
}

TEST(Escape, EveryByteOfAnInvalidSequenceIsEscaped) {
  for (const Range& range : kInvalid) {
    atTheEnds(range, [](const std::string& bytes) {
      EXPECT_EQ(escapeInvalidUtf8(bytes), escaped(bytes));
      EXPECT_EQ(escapeInvalidUtf8("a" + bytes + "b"), "a" + escaped(bytes) + "b");
    });
  }
}

TEST(Escape, SequencesCutShortAreEscapedAndWhatFollowsStays) {
  for (const Range& range : kValid) {
    atTheEnds(range, [](const std::string& bytes) {
      for (std::size_t kept = 1; kept < bytes.size(); ++kept) {
        const std::string cut = bytes.substr(0, kept);
        EXPECT_EQ(escapeInvalidUtf8(cut), escaped(cut));
        EXPECT_EQ(escapeInvalidUtf8(cut + "b"), escaped(cut) + "b");
      }
    });
  }
}

TEST(Escape, TextWithEscapesIsAlwaysValidUtf8) {
  // Every pair of bytes, alone and where it may complete a sequence that has begun.
  for (const std::string& start : {std::string(), std::string("\xE0"), std::string("\xF0\x90")}) {
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        const std::string bytes = start + static_cast<char>(first) + static_cast<char>(second);
        ASSERT_NO_THROW((void)nlohmann::json(escapeInvalidUtf8(bytes)).dump()) << escaped(bytes);
      }
    }
  }
}

TEST(Escape, NothingIsLostOfAMixedName) {
  EXPECT_EQ(escapeInvalidUtf8(""), "");
  EXPECT_EQ(escapeInvalidUtf8("backup_\xff\xc3\xa9\x80.tar.gz"),
            "backup_\\xff\xc3\xa9\\x80.tar.gz");
  EXPECT_EQ(escapeInvalidUtf8("two\nlines"), "two\nlines");
}

TEST(ShownLine, NothingOfANameReachesTheTerminalAsACommand) {
  EXPECT_EQ(escapeControls("a b\n\x1b[2J\x7f\xff\xc3\xa9\xc2\xa0\xc2\x9b"),
            "a b\\x0a\\x1b[2J\\x7f\\xff\xc3\xa9\xc2\xa0\\xc2\\x9b");
  EXPECT_EQ(escapeControls(std::string("a\0b", 3)), "a\\x00b");
}

/// What is not seen, or changes how the rest is seen, by its first and last code point.
constexpr Range kHidden[] = {
    {0x80, 0x9F, 2},        // C1 controls
    {0xAD, 0xAD, 2},        // the soft hyphen
    {0x61C, 0x61C, 2},      // Bidi_Control
    {0x200E, 0x200F, 3},    // Bidi_Control
    {0x202A, 0x202E, 3},    // Bidi_Control
    {0x2066, 0x2069, 3},    // Bidi_Control
    {0x200B, 0x200D, 3},    // of no width
    {0x2060, 0x2064, 3},    // of no width
    {0x2028, 0x2029, 3},    // ends of lines and paragraphs
    {0x2800, 0x2800, 3},    // a pattern of no dots
    {0xFE00, 0xFE0F, 3},    // variations
    {0xFFF9, 0xFFFB, 3},    // annotations
    {0xFEFF, 0xFEFF, 3},    // the byte order mark
    {0xE0000, 0xE007F, 4},  // tags
};

TEST(ShownLine, NothingHiddenIsInANameAndNothingTurnsItsOrderRound) {
  for (const Range& range : kHidden) {
    for (unsigned point = range.first; point <= range.last; ++point) {
      const std::string bytes = encoded(point, range.length);
      EXPECT_EQ(escapeControls("a" + bytes + "b"), "a" + escaped(bytes) + "b");
    }
  }
}

TEST(ShownLine, WhatCanBeSeenStaysAsItIs) {
  const std::string text =
      "\u00a0\u00ac\u00ae\u061b\u0639\u05d0\u200a\u2010\u2027\u202f\u205f\u2070\u27ff\u2801\ufdff"
      "\ufe10\ufffc\ufffd"
      "\U0001f600\U000dffff\U000e1000";
  EXPECT_EQ(escapeControls(text), text);
}

TEST(ShownXml, WhatXmlDoesNotAllowIsEscaped) {
  EXPECT_EQ(
      escapeForXml("<a>&\t\n\r\x7f\xc2\x80\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbd\xf4\x8f\xbf\xbf"),
      "<a>&\t\n\r\x7f\xc2\x80\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbd\xf4\x8f\xbf\xbf");
  EXPECT_EQ(escapeForXml("\x01\x1b\x1f|\xff|\xef\xbf\xbe\xef\xbf\xbf"),
            "\\x01\\x1b\\x1f|\\xff|\\xef\\xbf\\xbe\\xef\\xbf\\xbf");
}

}  // namespace
}  // namespace base
