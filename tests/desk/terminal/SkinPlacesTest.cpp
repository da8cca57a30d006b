#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Returns a screen of 38x10 cells and its border, with these elements and texts. A column has 18
/// pixels and a row 24.
Canvas canvasWith(const std::string& elements, const Json& widgets = Json::object()) {
  Picture picture{Canvas({40, 12}, utf8())};
  drawSkin(
      picture, {0, 0, 40, 24},
      frame({{"widgets", widgets},
             {"skin", R"(<screen position="18,24" size="684,240">)" + elements + "</screen>"}}));
  return picture.canvas;
}

/// Returns what is in the screen's box, from the line of its place on.
Lines screenWith(const std::string& elements, const Json& widgets = Json::object()) {
  return boxes(canvasWith(elements, widgets)).at(0);
}

TEST(SkinPlaces, TextStandsWhereItsAlignmentSays) {
  std::string elements;
  Json widgets = Json::object();
  const char* const horizontal[] = {"left", "center", "right"};
  const char* const vertical[] = {"top", "center", "bottom"};
  for (int x = 0; x < 3; ++x) {
    for (int y = 0; y < 3; ++y) {
      const std::string name = horizontal[x] + std::string(" ") + vertical[y];
      widgets[name] = name;
      elements += "<widget name=\"" + name + "\" position=\"0,0\" size=\"684,240\" halign=\"" +
                  horizontal[x] + "\" valign=\"" + vertical[y] + "\"/>";
    }
  }
  EXPECT_EQ(screenWith(elements, widgets),
            (Lines{"0,0 40x12", "1 left top      center top     right top",
                   "5 left center center center right center",
                   "10 left bottom center bottom right bottom"}));
}

TEST(SkinPlaces, FontDecidesHowFarLinesAreApart) {
  EXPECT_EQ(
      screenWith(R"(<widget name="a" position="0,0" size="162,240" font="Regular;20"/>)"
                 R"(<widget name="a" position="180,0" size="162,240" font="Regular;40"/>)"
                 R"(<widget name="a" position="360,0" size="162,240" font="Regular;30"/>)"
                 R"(<widget name="a" position="540,0" size="144,240" valign="bottom")"
                 R"( font="Regular;60"/>)",
                 {{"a", "one\ntwo\nthree"}}),
      (Lines{"0,0 40x12", "1 one       one       one", "2 two", "3 three     two       two",
             "4                     three     one", "5           three",
             "7                               two", "10                               three"}));
}

TEST(SkinPlaces, TextIsWrappedWithinItsPlaceAndItsEndCutHoweverItIsAligned) {
  for (const std::string align : {"top", "center", "bottom"}) {
    EXPECT_EQ(
        screenWith(R"(<widget name="a" position="90,48" size="180,72" valign=")" + align + R"("/>)",
                   {{"a", "a text of many words that are too many"}}),
        (Lines{"0,0 40x12", "3      a text of", "4      many words", "5      that are"}));
  }
}

TEST(SkinPlaces, WidgetsWithoutATextAreNotSeen) {
  EXPECT_EQ(screenWith(R"(<widget name="a" position="0,0" size="90,48"/>)"
                       R"(<widget name="b" position="0,0" size="90,48"/>)",
                       {{"a", ""}}),
            Lines{"0,0 40x12"});
}

TEST(SkinPlaces, ButtonsAreTaggedAndOtherPicturesMarkedHalfwayDown) {
  std::string elements;
  int x = 0;
  for (const char* file : {"button_red.png", "a/b/button_green.png", "button_yellow.svg",
                           "/button_blue.png", "button_off.png", "logo.png", ""}) {
    elements += R"(<ePixmap pixmap=")" + std::string(file) + R"(" position=")" + std::to_string(x) +
                R"(,24" size="36,72"/>)";
    x += 90;
  }
  EXPECT_EQ(screenWith(elements), (Lines{"0,0 40x12", "3  r    g    y    b   ▣    ▣    ▣"}));
}

TEST(SkinPlaces, HigherElementsCoverLowerOnesAndEqualOnesTheEarlier) {
  const Json widgets = {{"low", "low low"}, {"high", "high"}, {"last", "la"}};
  const auto element = [](const char* name, const char* z) {
    return std::string("<widget name=\"") + name + "\" position=\"0,0\" size=\"684,24\"" + z + "/>";
  };
  const std::string low = element("low", "");
  const std::string last = element("last", "");
  const std::string high = element("high", " zPosition=\"1\"");
  const std::string lowest = element("low", " zPosition=\"-1\"");
  const struct {
    std::string elements;
    const char* line;
  } table[] = {
      {low + high + last, " highlow"}, {high + low + last, " highlow"}, {low + last, " law low"},
      {last + low, " low low"},        {last + lowest, " law low"},
  };
  for (const auto& [elements, line] : table) {
    EXPECT_EQ(inInk(canvasWith(elements, widgets), 1, Ink::text), line) << elements;
  }
}

TEST(SkinPlaces, ElementsOutsideOfThePictureAreLeftOut) {
  EXPECT_EQ(screenWith(R"(<widget name="a" position="-360,0" size="180,24"/>)"
                       R"(<widget name="a" position="1800,0" size="180,24"/>)"
                       R"(<widget name="a" position="0,-96" size="180,24"/>)"
                       R"(<widget name="a" position="0,9000" size="180,24"/>)"
                       R"(<ePixmap pixmap="x.png" position="-90,0" size="18,24"/>)",
                       {{"a", "abcdef"}}),
            Lines{"0,0 40x12"});
}

TEST(SkinPlaces, EvenTheSmallestElementHasACell) {
  EXPECT_EQ(screenWith(R"(<widget name="a" position="90,24" size="0,0"/>)", {{"a", "abc"}}),
            (Lines{"0,0 40x12", "2      a"}));
}

TEST(SkinPlaces, NothingIsDrawnOutsideOfTheScreen) {
  EXPECT_EQ(screenWith(R"(<widget name="a" position="-36,0" size="162,24"/>)"
                       R"(<widget name="a" position="648,48" size="162,24"/>)"
                       R"(<widget name="a" position="0,240" size="162,24"/>)"
                       R"(<widget name="a" position="900,900" size="162,24"/>)"
                       R"(<ePixmap pixmap="button_red.png" position="666,72" size="60,24"/>)"
                       R"(<ePixmap pixmap="button_red.png" position="0,-24" size="60,24"/>)",
                       {{"a", "wide text"}}),
            (Lines{"0,0 40x12", "1 wide t…", "3                                     w…",
                   "4                                      r"}));
}

TEST(SkinPlaces, ScreenOfTheWholePictureKeepsItsBorderOnTheTerminal) {
  Picture picture{Canvas({30, 10}, utf8())};
  drawSkin(picture, {0, 0, 30, 9}, frame({{"skin", R"(<screen position="0,0" size="720,576"/>)"}}));
  EXPECT_EQ(boxes(picture.canvas), std::vector<Lines>{{"0,0 30x9"}});
}

}  // namespace
}  // namespace desk::terminal
