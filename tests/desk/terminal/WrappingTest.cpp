#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

struct Wrapping {
  const char* text;
  int columns;
  Lines lines;
};

void expectLines(const Lettering& lettering, const std::vector<Wrapping>& table) {
  for (const auto& [text, columns, lines] : table) {
    EXPECT_EQ(lettering.wrapped(text, columns), lines) << text << " in " << columns;
  }
}

TEST(Wrapping, TextThatFitsIsOneLine) {
  expectLines(utf8(), {{"one two", 7, {"one two"}}, {"one two", 80, {"one two"}}});
}

TEST(Wrapping, LineBreaksEndLinesAndEmptyLinesStay) {
  expectLines(utf8(), {
                          {"", 5, {}},
                          {"\n", 5, {""}},
                          {"a\nb", 5, {"a", "b"}},
                          {"a\nb\n", 5, {"a", "b"}},
                          {"a\n\nb\n\n", 5, {"a", "", "b", ""}},
                          {"\n\na", 5, {"", "", "a"}},
                      });
}

TEST(Wrapping, LineBreaksAtTheLastBlankThatLeavesItShortEnough) {
  const char* const kText = "the quick fox";
  expectLines(utf8(), {
                          {kText, 13, {"the quick fox"}},
                          {kText, 12, {"the quick", "fox"}},
                          {kText, 9, {"the quick", "fox"}},
                          {kText, 8, {"the", "quick", "fox"}},
                          {kText, 5, {"the", "quick", "fox"}},
                          {kText, 4, {"the", "quic", "k", "fox"}},
                          {kText, 3, {"the", "qui", "ck", "fox"}},
                      });
}

TEST(Wrapping, WordWithoutBlanksIsCutAnywhere) {
  expectLines(utf8(), {
                          {"abcdefgh", 3, {"abc", "def", "gh"}},
                          {"abcdefgh", 4, {"abcd", "efgh"}},
                          {"a bcdefgh", 4, {"a", "bcde", "fgh"}},
                          {"bcdefgh a", 4, {"bcde", "fgh", "a"}},
                      });
}

TEST(Wrapping, BlanksThatALineEndsWithAreLeftOutWhereItBreaks) {
  expectLines(utf8(), {
                          {"ab ", 2, {"ab"}},
                          {"ab cd ", 2, {"ab", "cd"}},
                          {"ab ", 3, {"ab "}},
                          {"  ab", 4, {"  ab"}},
                          {" abcd", 3, {" ab", "cd"}},
                          {"abc   def", 3, {"abc", "def"}},
                          {"  abcdef", 4, {"  ab", "cdef"}},
                      });
}

TEST(Wrapping, WidthOfOneMakesALineOfEveryLetter) {
  expectLines(utf8(), {
                          {"abc", 1, {"a", "b", "c"}},
                          {"a b", 1, {"a", "b"}},
                          {"a\n\nb", 1, {"a", "", "b"}},
                          {"e\u0301x", 1, {"e\u0301", "x"}},
                          {"\u65e5x", 1, {"\u65e5", "x"}},  // wider than the line, and yet shown
                      });
}

TEST(Wrapping, WithoutAnyRoomItStillComesToAnEnd) {
  expectLines(utf8(), {{"ab", 0, {"a", "b"}}, {"ab", -3, {"a", "b"}}});
}

TEST(Wrapping, WideCharactersAreNeverParted) {
  expectLines(utf8(), {
                          {"\u65e5\u672c\u8a9e", 6, {"\u65e5\u672c\u8a9e"}},
                          {"\u65e5\u672c\u8a9e", 5, {"\u65e5\u672c", "\u8a9e"}},
                          {"\u65e5\u672c\u8a9e", 4, {"\u65e5\u672c", "\u8a9e"}},
                          {"\u65e5\u672c\u8a9e", 3, {"\u65e5", "\u672c", "\u8a9e"}},
                          {"a\u65e5 \u672c", 4, {"a\u65e5", "\u672c"}},
                      });
}

TEST(Wrapping, TabsAreBlanksToBreakAt) {
  expectLines(utf8(), {{"ab\tcd", 8, {"ab    cd"}}, {"ab\tcd", 6, {"ab", "cd"}}});
}

TEST(Wrapping, EscapedCharactersCountAsWhatIsShown) {
  expectLines(ascii(), {
                           {"caf\u00e9 au", 11, {"caf\\xc3\\xa9", "au"}},
                           {"\u00e9", 4, {"\\xc3", "\\xa9"}},
                           {"a\rb", 6, {"a\\x0db"}},
                       });
}

TEST(Wrapping, NoLineIsWiderThanAskedForAndNoLetterIsLost) {
  const std::string text =
      "It restarts \u65e5\u672c\u8a9e, caf\u00e9s and/or\tve\u0301ry-long-words";
  const std::string letters = [&] {
    std::string all;
    for (const Glyph& glyph : utf8().glyphs(text)) all += glyph.bytes == " " ? "" : glyph.bytes;
    return all;
  }();
  for (int columns = 2; columns < 50; ++columns) {
    std::string together;
    for (const std::string& line : utf8().wrapped(text, columns)) {
      EXPECT_LE(utf8().columns(line), columns) << line;
      for (const char byte : line) together += byte == ' ' ? "" : std::string(1, byte);
    }
    EXPECT_EQ(together, letters) << columns;
  }
}

}  // namespace
}  // namespace desk::terminal
