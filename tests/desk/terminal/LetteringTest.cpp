#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "desk/terminal/Lettering.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

using Glyphs = std::vector<Glyph>;

/// Returns ASCII characters as the glyphs that they are.
Glyphs plain(const std::string& text) {
  Glyphs glyphs;
  for (const char character : text) glyphs.push_back({std::string(1, character), 1});
  return glyphs;
}

struct GlyphsOfText {
  std::string text;
  Glyphs in_utf8;
  Glyphs in_ascii;
};

/// Expects what both charsets make of each text.
void expectGlyphs(const std::vector<GlyphsOfText>& texts) {
  for (const GlyphsOfText& expected : texts) {
    EXPECT_EQ(utf8().glyphs(expected.text), expected.in_utf8) << expected.text;
    EXPECT_EQ(ascii().glyphs(expected.text), expected.in_ascii) << expected.text;
  }
}

TEST(Lettering, EveryPrintableAsciiCharacterStandsForItself) {
  std::string text;
  for (char character = ' '; character <= '~'; ++character) text += character;
  expectGlyphs({{"", {}, {}}, {text, plain(text), plain(text)}});
}

TEST(Lettering, OtherCharactersAreShownInUtf8AndEscapedInAscii) {
  expectGlyphs({
      {"\u00e9", {{"\u00e9", 1}}, plain("\\xc3\\xa9")},
      {"a\u20acb", {{"a", 1}, {"\u20ac", 1}, {"b", 1}}, plain("a\\xe2\\x82\\xacb")},
  });
}

TEST(Lettering, EastAsianCharactersAndEmojiTakeTwoColumns) {
  expectGlyphs({
      {"\u65e5\u672c", {{"\u65e5", 2}, {"\u672c", 2}}, plain("\\xe6\\x97\\xa5\\xe6\\x9c\\xac")},
      {"\uff21", {{"\uff21", 2}}, plain("\\xef\\xbc\\xa1")},  // full width A
      {"\uff71", {{"\uff71", 1}}, plain("\\xef\\xbd\\xb1")},  // half width katakana
      {"\U0001f4fa", {{"\U0001f4fa", 2}}, plain("\\xf0\\x9f\\x93\\xba")},
  });
}

TEST(Lettering, MarksStandUponTheCharacterBeforeThem) {
  expectGlyphs({
      {"e\u0301x", {{"e\u0301", 1}, {"x", 1}}, plain("e\\xcc\\x81x")},
      {"o\u0308\u0304", {{"o\u0308\u0304", 1}}, plain("o\\xcc\\x88\\xcc\\x84")},
      {"\u65e5\u0301", {{"\u65e5\u0301", 2}}, plain("\\xe6\\x97\\xa5\\xcc\\x81")},
      {" \u0301", {{" \u0301", 1}}, plain(" \\xcc\\x81")},
  });
}

TEST(Lettering, MarkWithNothingBeforeItIsEscaped) {
  expectGlyphs({
      {"\u0301", plain("\\xcc\\x81"), plain("\\xcc\\x81")},
      {"\u0301e", plain("\\xcc\\x81e"), plain("\\xcc\\x81e")},
  });
}

TEST(Lettering, ControlCharactersAreEscapedByteByByte) {
  expectGlyphs({
      {std::string(1, '\0'), plain("\\x00"), plain("\\x00")},
      {"a" + std::string(1, '\0'), plain("a\\x00"), plain("a\\x00")},
      {"\x01", plain("\\x01"), plain("\\x01")},
      {"a\nb", plain("a\\x0ab"), plain("a\\x0ab")},
      {"\r\n", plain("\\x0d\\x0a"), plain("\\x0d\\x0a")},
      {"\x1b[2J", plain("\\x1b[2J"), plain("\\x1b[2J")},
      {"\x7f", plain("\\x7f"), plain("\\x7f")},
      {"\u0085", plain("\\xc2\\x85"), plain("\\xc2\\x85")},
      {"\u009b2J", plain("\\xc2\\x9b2J"), plain("\\xc2\\x9b2J")},
      {"\u2028", plain("\\xe2\\x80\\xa8"), plain("\\xe2\\x80\\xa8")},
  });
}

TEST(Lettering, InvisibleCharactersThatChangeOthersAreEscaped) {
  const std::pair<const char*, const char*> names[] = {{"a\u202eb", "a\\xe2\\x80\\xaeb"},
                                                       {"a\u200bb", "a\\xe2\\x80\\x8bb"},
                                                       {"a\u00adb", "a\\xc2\\xadb"},
                                                       {"\ufeffb", "\\xef\\xbb\\xbfb"},
                                                       {"a\u061cb", "a\\xd8\\x9cb"},
                                                       {"a\u3164b", "a\\xe3\\x85\\xa4b"},
                                                       {"a\U000e0041b", "a\\xf3\\xa0\\x81\\x81b"}};
  for (const auto& [name, shown_name] : names) EXPECT_EQ(utf8().cut(name, 40), shown_name);
}

TEST(Lettering, TabIsFourBlanks) {
  expectGlyphs({
      {"\t", plain("    "), plain("    ")},
      {"a\tb\t", plain("a    b    "), plain("a    b    ")},
  });
}

TEST(Lettering, TextTakesTheColumnsOfItsGlyphs) {
  const struct {
    const char* text;
    int in_utf8;
    int in_ascii;
  } texts[] = {
      {"", 0, 0},         {"abc", 3, 3},     {"\t", 4, 4}, {"caf\u00e9", 4, 11},
      {"\u65e5x", 3, 13}, {"e\u0301", 1, 9}, {"\n", 4, 4},
  };
  for (const auto& [text, in_utf8, in_ascii] : texts) {
    EXPECT_EQ(utf8().columns(text), in_utf8) << text;
    EXPECT_EQ(ascii().columns(text), in_ascii) << text;
  }
}

/// Returns the text cut to each width from -1 on, `count` of them.
Lines cuts(const Lettering& lettering, const std::string& text, int count) {
  Lines results;
  for (int width = -1; width < count - 1; ++width) results.push_back(lettering.cut(text, width));
  return results;
}

TEST(Lettering, TextIsCutAndMarkedAtEveryWidthThatItDoesNotFitInto) {
  EXPECT_EQ(cuts(utf8(), "Scan", 7), (Lines{"", "", "…", "S…", "Sc…", "Scan", "Scan"}));
  EXPECT_EQ(cuts(ascii(), "Scan", 7), (Lines{"", "", "~", "S~", "Sc~", "Scan", "Scan"}));
  EXPECT_EQ(cuts(utf8(), "", 3), (Lines{"", "", ""}));
}

TEST(Lettering, CutNeverTakesHalfOfACharacter) {
  EXPECT_EQ(cuts(utf8(), "\u65e5\u672ce\u0301", 8),
            (Lines{"", "", "…", "…", "\u65e5…", "\u65e5…", "\u65e5\u672ce\u0301",
                   "\u65e5\u672ce\u0301"}));
}

TEST(Lettering, CutTextIsEscapedLikeAWholeOne) {
  EXPECT_EQ(cuts(ascii(), "a\u00e9", 11),
            (Lines{"", "", "~", "a~", "a\\~", "a\\x~", "a\\xc~", "a\\xc3~", "a\\xc3\\~",
                   "a\\xc3\\x~", "a\\xc3\\xa9"}));
  EXPECT_EQ(cuts(utf8(), "\ta", 7), (Lines{"", "", "…", " …", "  …", "   …", "    a"}));
}

TEST(Lettering, CutAtTheFrontKeepsTheEnd) {
  const std::pair<int, const char*> cuts[] = {
      {9, "plugins/a"}, {8, "…ugins/a"}, {2, "…a"}, {1, "…"}, {0, ""}};
  for (const auto& [columns, cut] : cuts) {
    EXPECT_EQ(utf8().cutFront("plugins/a", columns), cut) << columns;
  }
  EXPECT_EQ(utf8().cutFront("日本語", 5), "…本語");
  EXPECT_EQ(utf8().cutFront("日本語", 4), "…語");
  EXPECT_EQ(ascii().cutFront("plugins/a", 4), "~s/a");
}

TEST(Lettering, TerminalGetsTheSignThatItCanShow) {
  EXPECT_EQ(utf8().either("─", "-"), "─");
  EXPECT_EQ(ascii().either("─", "-"), "-");
}

TEST(Lettering, LocaleSaysWhichCharsetTheTerminalHas) {
  const char* const before = std::getenv("LC_ALL");
  const std::string kept = before ? before : "";
  for (const auto& [locale, sign] :
       {std::pair("C", "-"), std::pair("C.UTF-8", "─"), std::pair("no such locale", "-")}) {
    setenv("LC_ALL", locale, 1);
    std::setlocale(LC_CTYPE, "C");  // as in every process at its start
    EXPECT_EQ(Lettering::ofLocale().either("─", "-"), sign) << locale;
  }
  if (before) {
    setenv("LC_ALL", kept.c_str(), 1);
  } else {
    unsetenv("LC_ALL");
  }
}

}  // namespace
}  // namespace desk::terminal
