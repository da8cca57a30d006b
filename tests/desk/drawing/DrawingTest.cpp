#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "desk/drawing/Drawing.h"
#include "desk/drawing/SkinFile.h"

namespace desk::drawing {
namespace {

using Lines = std::vector<std::string>;

/// A skin of 100x50 with one screen, "Any", that has these elements.
SkinFile skinWith(const std::string& elements, const std::string& attributes = "") {
  SkinFile file;
  file.skin = parseSkin(R"(<skin><output><resolution xres="100" yres="50"/></output>
      <screen name="Any" position="10,5" size="80,40" )" +
                            attributes + ">" + elements + "</screen></skin>",
                        file.notices);
  return file;
}

/// Returns a frame of the screen "Any" with these text widgets and rows.
Frame frame(const std::map<std::string, std::string>& texts = {}, const Rows& rows = {},
            std::size_t selected = 0) {
  return {.layers = {{.screen = "Any",
                      .title = "A title",
                      .rows = std::make_shared<const Rows>(rows),
                      .selected = selected,
                      .content = ScreenContent{.texts = texts, .list = "list"}}}};
}

/// Adds what an element draws, a line each: "rect 0,0 10x10 #ffffff", "text 5,7 Hello"; places are
/// those of the whole picture.
void addLines(Lines& lines, const pugi::xml_node& node, double x, double y) {
  for (const pugi::xml_node& child : node.children()) {
    const std::string name = child.name();
    const double left = x + child.attribute("x").as_double();
    const double top = y + child.attribute("y").as_double();
    std::ostringstream line;
    line << name << " " << left << "," << top;
    if (name == "rect" || name == "svg") {
      line << " " << child.attribute("width").value() << "x" << child.attribute("height").value();
    }
    for (const char* shown : {"fill", "fill-opacity", "stroke", "text-anchor", "font-size",
                              "data-widget", "data-picture", "role", "aria-selected", "href"}) {
      if (child.attribute(shown)) line << " " << child.attribute(shown).value();
    }
    if (name == "text") line << " " << child.text().get();
    lines.push_back(line.str());
    if (name == "svg") addLines(lines, child, left, top);
  }
}

/// Returns what is drawn within the screen.
Lines drawn(Drawing& drawing, const Frame& frame) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(drawing.draw(frame, std::nullopt).c_str()));
  Lines lines;
  const pugi::xml_node screen = document.child("svg").find_child_by_attribute("data-screen", "Any");
  addLines(lines, screen, screen.attribute("x").as_double(), screen.attribute("y").as_double());
  return lines;
}

Lines drawn(const std::string& elements, const Frame& frame) {
  Drawing drawing(skinWith(elements), [](const std::string& path) {
    return path == "/there.png" ? std::optional<std::string>("data:there") : std::nullopt;
  });
  return drawn(drawing, frame);
}

constexpr const char* kBackgroundLine = "rect 10,5 80x40 #121820";

TEST(Drawing, TextStandsWhereTheSkinPutsIt) {
  EXPECT_EQ(drawn(R"(<widget name="a" position="1,2" size="30,20" font="Regular;10"/>
      <widget name="b" position="1,2" size="30,20" font="Regular;10" halign="right" transparent="1"
              foregroundColor="#80ff0000" backgroundColor="#00ff00"/>
      <widget name="c" position="40,2" size="30,20" font="Regular;10" halign="center"
              valign="bottom" backgroundColor="#00ff00"/>)",
                  frame({{"a", "A"}, {"b", "B"}, {"c", "C"}})),
            (Lines{kBackgroundLine, "svg 11,7 30x20 a", "rect 11,7 30x20 #121820",
                   "text 11,16.28 #ffffff start 10 A", "svg 11,7 30x20 b",
                   "text 41,16.28 #ff0000 0.5 end 10 B", "svg 50,7 30x20 c",
                   "rect 50,7 30x20 #00ff00", "text 65,24.64 #ffffff middle 10 C"}));
}

TEST(Drawing, PictureThatIsMissingHasAStandIn) {
  EXPECT_EQ(drawn(R"(<ePixmap pixmap="/there.png" position="1,2" size="9,8"/>
      <ePixmap pixmap="/button_red.png" position="1,2" size="9,8"/>
      <ePixmap pixmap="/other.png" position="1,2" size="9,8"/>)",
                  frame()),
            (Lines{kBackgroundLine, "svg 11,7 9x8 /there.png", "image 11,7 data:there",
                   "svg 11,7 9x8 /button_red.png", "rect 11,7 9x8 #9f1313",
                   "svg 11,7 9x8 /other.png", "rect 12,8 7x6 none #3c506c"}));
}

TEST(Drawing, LabelOfTheSkinIsAnAreaAndAText) {
  EXPECT_EQ(drawn(R"(<eLabel position="1,2" size="70,1" backgroundColor="#808080"/>
      <eLabel text="Hello" position="1,4" size="70,20" font="Regular;10" transparent="1"/>)",
                  frame()),
            (Lines{kBackgroundLine, "svg 11,7 70x1", "rect 11,7 70x1 #808080", "svg 11,9 70x20",
                   "text 11,18.28 #ffffff start 10 Hello"}));
}

TEST(Drawing, ListShowsThePageOfTheCursorAndAScrollBar) {
  const char* list = R"(<widget name="list" position="0,0" size="80,20" font="Regular;8"
      itemHeight="10" transparent="1" foregroundColor="#111111" foregroundColorSelected="#222222"
      backgroundColorSelected="#333333"/>)";
  const Rows rows = {{"one"}, {"two"}, {"three"}};
  const Lines expected = {kBackgroundLine,
                          "svg 10,5 80x20 list listbox",
                          "svg 10,5 80x10 option true",
                          "rect 10,5 80x10 none",
                          "rect 10,5 80x10 #333333",
                          "svg 20,5 60x10",
                          "text 20,12.77 #222222 start 8 three",
                          "rect 86,5 4x20 #3c506c",
                          "rect 86,18 4x7 #ffffff"};
  EXPECT_EQ(drawn(list, frame({}, rows, 2)), expected);
}

TEST(Drawing, ScrollBarIsShownWhenTheSkinSaysSo) {
  const struct {
    const char* mode;
    std::size_t rows;
    bool is_shown;
  } cases[] = {{"showOnDemand", 2, false},
               {"showOnDemand", 3, true},
               {"showAlways", 0, true},
               {"showNever", 3, false}};
  for (const auto& [mode, count, is_shown] : cases) {
    const Rows rows(count, Row{"row"});
    const Lines lines =
        drawn(std::string(R"(<widget name="list" position="0,0" size="80,20" itemHeight="10"
            transparent="1" scrollbarMode=")") +
                  mode + "\"/>",
              frame({}, rows));
    EXPECT_EQ(std::ranges::count(lines, "rect 86,5 4x20 #3c506c"), is_shown ? 1 : 0)
        << mode << count;
  }
}

TEST(Drawing, RowIsDrawnByItsTemplate) {
  const char* list = R"(<widget source="list" render="Listbox" position="0,0" size="80,40"
      transparent="1"><convert type="TemplatedMultiContent">{"template": [
        MultiContentEntryPixmapAlphaTest(pos=(1,2), size=(3,4), png=3),
        MultiContentEntryText(pos=(10,0), size=(60,10), font=1, text=1, color_sel=0xff0000),
        MultiContentEntryText(pos=(10,10), size=(60,10), font=0, flags=RT_HALIGN_RIGHT, text=2,
                              color=0x00ff00),
        MultiContentEntryText(pos=(70,0), size=(5,10), font=0, text=">"),
        MultiContentEntryText(pos=(70,0), size=(5,10), font=0, text=9)],
      "fonts": [gFont("Regular", 6), gFont("Regular", 8)], "itemHeight": 20}</convert></widget>)";
  const Frame shown = frame({}, {{"one", "first", "/there.png"}, {"two", "second"}});
  EXPECT_EQ(drawn(list, shown), (Lines{kBackgroundLine,
                                       "svg 10,5 80x40 list listbox",
                                       "svg 10,5 80x20 option true",
                                       "rect 10,5 80x20 none",
                                       "rect 10,5 80x20 #2f5a8f",
                                       "svg 11,7 3x4",
                                       "image 11,7 data:there",
                                       "svg 20,5 60x10",
                                       "text 20,12.43 #ff0000 start 8 one",
                                       "svg 20,15 60x10",
                                       "text 80,20.57 #00ff00 end 6 first",
                                       "svg 80,5 5x10",
                                       "text 80,10.57 #ffffff start 6 >",
                                       "svg 80,5 5x10",
                                       "svg 10,25 80x20 option false",
                                       "rect 10,25 80x20 none",
                                       "svg 11,27 3x4",
                                       "svg 20,25 60x10",
                                       "text 20,32.43 #ffffff start 8 two",
                                       "svg 20,35 60x10",
                                       "text 80,40.57 #00ff00 end 6 second",
                                       "svg 80,25 5x10",
                                       "text 80,30.57 #ffffff start 6 >",
                                       "svg 80,25 5x10"}));
}

/// Returns how many rows of a list a dialog shows on a television picture of this size.
std::ptrdiff_t shownRows(const char* dialog, std::size_t rows, int width, int height) {
  SkinFile file;
  file.skin.settings.width = width;
  file.skin.settings.height = height;
  Drawing drawing(std::move(file), [](const std::string&) { return std::nullopt; });
  Frame shown = frame({}, Rows(rows, Row{"a row"}));
  shown.layers.back().screen = dialog;
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(drawing.draw(shown, std::nullopt).c_str()));
  return std::ssize(document.select_nodes("//svg[@role='option']"));
}

TEST(Drawing, DialogsShowAsManyRowsInEveryResolution) {
  for (const auto& [width, height] :
       {std::pair{720, 576}, {1280, 720}, {1920, 1080}, {1024, 576}, {3840, 2160}, {8, 8}}) {
    EXPECT_EQ(shownRows("MessageBox", 9, width, height), 2) << height;
    EXPECT_EQ(shownRows("ChoiceBox", 20, width, height), 9) << height;
  }
}

TEST(Drawing, WhatTheScreenDoesNotHaveIsNoticedOnce) {
  Drawing drawing(skinWith(R"(<widget name="typo" position="0,0" size="1,1" transparent="1"/>)"),
                  [](const std::string&) { return std::nullopt; });
  const Frame known = frame();
  Frame unknown = known;
  unknown.layers.back().screen = "Other";
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(drawn(drawing, known), (Lines{kBackgroundLine, "svg 10,5 1x1 typo"}));
    drawing.draw(unknown, std::nullopt);
  }
  EXPECT_EQ(drawing.notices().lines(), (Lines{"the screen \"Any\" has no widget \"typo\"",
                                              "the skin has no screen \"Other\""}));
}

}  // namespace
}  // namespace desk::drawing
