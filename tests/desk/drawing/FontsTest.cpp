#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Files.h"
#include "desk/drawing/Fonts.h"
#include "tests/support/TemporaryDirectory.h"

namespace desk::drawing {
namespace {

using Lines = std::vector<std::string>;

struct FontsTest : testing::Test {
  Lines linesOf(const std::string& text, double letters, bool wraps = true) {
    const TextLayout layout{.font = font, .wraps = wraps};
    return fonts.linesOf(text, layout, fonts.widthOf("m", font) * letters + 0.5);
  }

  Notices notices;
  Fonts fonts{{}, "", notices};
  SkinFont font{"Regular", 20};
};

TEST_F(FontsTest, WidthIsThatOfTheLettersAndGrowsWithTheSize) {
  const double letter = fonts.widthOf("m", font);
  EXPECT_GT(letter, 0);
  EXPECT_GT(letter, fonts.widthOf("i", font));
  EXPECT_DOUBLE_EQ(fonts.widthOf("mmm", font), 3 * letter);
  EXPECT_DOUBLE_EQ(fonts.widthOf("m", {"Regular", 40}), 2 * letter);
  EXPECT_DOUBLE_EQ(fonts.widthOf("", font), 0);
}

TEST_F(FontsTest, CharacterOfSeveralBytesIsOne) {
  EXPECT_DOUBLE_EQ(fonts.widthOf("\u00f6", font), fonts.widthOf("o", font));
  EXPECT_LT(fonts.widthOf("\u20ac", font), fonts.widthOf("mm", font));
  EXPECT_GT(fonts.widthOf("\U0001F600", font), 0);
}

TEST_F(FontsTest, LineHasRoomForItsLettersAboveAndBelow) {
  EXPECT_GT(fonts.baselineOf(font), font.size * 0.7);
  EXPECT_GT(fonts.lineHeightOf(font), fonts.baselineOf(font));
}

TEST_F(FontsTest, LineBreaksAtBlanksAndWithinAWordThatIsTooLong) {
  const struct {
    const char* text;
    Lines lines;
  } cases[] = {
      {"", {}},
      {"mmmm", {"mmmm"}},
      {"mm mm", {"mm", "mm"}},
      {"mm  mm", {"mm", "mm"}},
      {"mmmm mm", {"mmmm", "mm"}},
      {"mmmmmm", {"mmmm", "mm"}},
      {"m mmmmm", {"m", "mmmm", "m"}},
      {"m m mm", {"m m", "mm"}},
      {"  mmmmm", {"  mmm", "mm"}},
      {"mm\nmm", {"mm", "mm"}},
      {"m\n\nm\n", {"m", "", "m"}},
  };
  for (const auto& [text, lines] : cases) EXPECT_EQ(linesOf(text, 4), lines) << text;
}

TEST_F(FontsTest, LineThatIsNotWrappedBreaksAtLineBreaksAlone) {
  EXPECT_EQ(linesOf("mmmmmm mmmm\nm", 4, false), (Lines{"mmmmmm mmmm", "m"}));
}

TEST_F(FontsTest, NoRoomAtAllStillTakesALetterALine) {
  EXPECT_EQ(linesOf("mmm", 0), (Lines{"m", "m", "m"}));
}

TEST(Fonts, FontOfTheSkinIsMeasuredByItsOwnFile) {
  support::TemporaryDirectory directory;
  std::filesystem::copy_file(SERIF_FONT, directory / "own.ttf");
  directory.write("broken.ttf", "no font");
  SkinSettings settings;
  settings.fonts = {{"Own", "own.ttf"},
                    {"Missing", "missing.ttf"},
                    {"Broken", "broken.ttf"},
                    {"Endless", "/dev/zero"}};
  Notices notices;
  Fonts fonts(settings, directory.path(), notices);
  const auto widthOf = [&](const std::string& name) {
    return fonts.widthOf("Stowline", {name, 20});
  };
  EXPECT_NE(widthOf("Own"), widthOf("Regular"));
  EXPECT_EQ(widthOf("Missing"), widthOf("Regular"));
  EXPECT_EQ(widthOf("Broken"), widthOf("Regular"));
  EXPECT_EQ(*fonts.contentOf("Own"), base::readFile(SERIF_FONT));
  EXPECT_EQ(fonts.contentOf("Missing"), fonts.contentOf("Regular"));
  EXPECT_EQ(notices.lines(),
            (std::vector<std::string>{"cannot use the font '" + (directory / "broken.ttf") + "'",
                                      "cannot use the font '/dev/zero': it is too large",
                                      "cannot use a font: No such file or directory: '" +
                                          (directory / "missing.ttf") + "'"}));
}

}  // namespace
}  // namespace desk::drawing
