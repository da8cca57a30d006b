#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "desk/skin/Skin.h"

namespace desk {
namespace {

constexpr const char* kScreen = R"(<screen position="10,20" size="400,300">)";

SkinScreen screenOf(const std::string& xml) {
  Notices notices;
  return parseScreen(xml, {}, notices);
}

/// Returns the one element of a screen of 400x300.
SkinElement elementOf(const std::string& xml) {
  const SkinScreen screen = screenOf(kScreen + xml + "</screen>");
  EXPECT_EQ(screen.elements.size(), 1U) << xml;
  return screen.elements.at(0);
}

/// Returns an element with these attributes beside its name and size.
SkinElement widget(const std::string& attributes) {
  return elementOf(R"(<widget name="text" position="1,2" size="3,4" )" + attributes + "/>");
}

/// Returns what is said against `xml`; "" for nothing.
std::string complaint(const std::string& xml) {
  try {
    screenOf(xml);
    return "";
  } catch (const SkinError& error) {
    return error.what();
  }
}

TEST(Skin, ScreenHasItsPlaceAndItsElements) {
  const SkinScreen screen = screenOf(R"(
<screen name="Any" position="10,20" size="400,300" title="Any">
  <widget name="text" position="1,2" size="3,4" font="Regular;22" halign="center" valign="bottom"/>
  <widget source="key_red" render="Label" position="5,6" size="7,8" halign="right" valign="center"/>
  <ePixmap pixmap="/pictures/a.png" position="9,10" size="11,12"/>
</screen>)");
  EXPECT_EQ(screen.area, (SkinArea{10, 20, 400, 300}));
  EXPECT_EQ(
      screen.elements,
      (std::vector<SkinElement>{
          {.kind = SkinElement::Kind::widget,
           .name = "text",
           .area = {1, 2, 3, 4},
           .layout = {{"Regular", 22}, Align::center, Align::end}},
          {.kind = SkinElement::Kind::widget,
           .name = "key_red",
           .area = {5, 6, 7, 8},
           .layout = {{}, Align::end, Align::center}},
          {.kind = SkinElement::Kind::picture, .name = "/pictures/a.png", .area = {9, 10, 11, 12}},
      }));
}

TEST(Skin, ScreenWithoutElementsIsEmpty) {
  const SkinScreen screen = screenOf(R"(<?xml version="1.0"?><screen position="0,0" size="0,0"/>)");
  EXPECT_EQ(screen.area, (SkinArea{0, 0, 0, 0}));
  EXPECT_TRUE(screen.elements.empty());
}

TEST(Skin, CenterOfAScreenIsThatOfTheTelevisionPicture) {
  const struct {
    const char* attributes;
    SkinArea area;
  } screens[] = {
      {R"(position="center,center" size="650,250")", {35, 163, 650, 250}},
      {R"(position="center,0" size="720,576")", {0, 0, 720, 576}},
      {R"(position="-5,center" size="1,1")", {-5, 287, 1, 1}},
      {R"(position="center,center" size="800,600")", {-40, -12, 800, 600}},
  };
  for (const auto& [attributes, area] : screens) {
    EXPECT_EQ(screenOf("<screen " + std::string(attributes) + "/>").area, area) << attributes;
  }
}

TEST(Skin, CenterOfAnElementIsThatOfItsScreen) {
  EXPECT_EQ(elementOf(R"(<widget name="a" position="center,center" size="100,50"/>)").area,
            (SkinArea{150, 125, 100, 50}));
  EXPECT_EQ(elementOf(R"(<ePixmap pixmap="a" position="center,7" size="25,25"/>)").area,
            (SkinArea{187, 7, 25, 25}));
}

TEST(Skin, FontSizeFollowsItsName) {
  EXPECT_EQ(widget("").layout.font, (SkinFont{"Regular", 20}));
  EXPECT_EQ(widget(R"(font="Regular;1")").layout.font, (SkinFont{"Regular", 1}));
  EXPECT_EQ(widget(R"(font="Some Font;48")").layout.font, (SkinFont{"Some Font", 48}));
}

TEST(Skin, AlignmentThatIsNotKnownIsAtTheBeginning) {
  const struct {
    const char* value;
    Align align;
  } values[] = {{"left", Align::begin},  {"top", Align::begin},   {"center", Align::center},
                {"right", Align::end},   {"bottom", Align::end},  {"", Align::begin},
                {"block", Align::begin}, {"Center", Align::begin}};
  for (const auto& [value, align] : values) {
    EXPECT_EQ(widget("halign=\"" + std::string(value) + "\"").layout.halign, align) << value;
    EXPECT_EQ(widget("valign=\"" + std::string(value) + "\"").layout.valign, align) << value;
  }
  EXPECT_EQ(widget("").layout.halign, Align::begin);
  EXPECT_EQ(widget("").layout.valign, Align::begin);
}

TEST(Skin, NameOfAWidgetGoesBeforeItsSource) {
  const struct {
    const char* names;
    const char* name;
  } table[] = {{R"(name="a")", "a"},
               {R"(source="b")", "b"},
               {R"(name="a" source="b")", "a"},
               {"", ""},
               {R"(name="&lt;&#252;")", "<\u00fc"}};
  for (const auto& [names, name] : table) {
    const std::string xml = "<widget position=\"0,0\" size=\"1,1\" " + std::string(names) + "/>";
    EXPECT_EQ(elementOf(xml).name, name) << xml;
  }
}

TEST(Skin, WhatIsNotUnderstoodIsLeftOutAndNoticedOnce) {
  Notices notices;
  const SkinScreen screen = parseScreen(
      kScreen + std::string("<!-- a comment --><panel/>text<panel/>"
                            R"(<widget name="a" position="0,0" size="1,1" shadow="1">)"
                            R"(<convert type="Other">{</convert>)"
                            R"(<foo type="TemplatedMultiContent">{</foo></widget>)"
                            R"(<widget name="a" position="0,0" size="1,1" shadow="2"/></screen>)"),
      {}, notices);
  const SkinElement expected{.kind = SkinElement::Kind::widget, .name = "a", .area = {0, 0, 1, 1}};
  EXPECT_EQ(screen.elements, (std::vector{expected, expected}));
  EXPECT_EQ(
      notices.lines(),
      (std::vector<std::string>{
          "the element \"panel\" is not understood",
          "the attribute \"shadow\" of the element \"widget\" is not understood",
          "the element \"convert\" is not understood", "the element \"foo\" is not understood"}));
}

TEST(Skin, LowestElementComesFirstAndEqualOnesKeepTheirOrder) {
  constexpr const char* kDepths[] = {"1", "0", "-1", "0", "0"};
  std::string xml = kScreen;
  for (int index = 0; index < 50; ++index) {
    xml += "<widget name=\"" + std::to_string(index) +
           R"(" position="0,0" size="1,1" zPosition=")" + kDepths[index % 5] + "\"/>";
  }
  std::vector<std::string> names;
  for (const SkinElement& element : screenOf(xml + "</screen>").elements) {
    names.push_back(element.name);
  }
  std::vector<std::string> expected;
  for (const auto& depths : {std::vector{2}, std::vector{1, 3, 4}, std::vector{0}}) {
    for (int index = 0; index < 50; ++index) {
      if (std::ranges::count(depths, index % 5) > 0) expected.push_back(std::to_string(index));
    }
  }
  EXPECT_EQ(names, expected);
}

TEST(Skin, FaultyXmlIsNamedWithItsPlace) {
  const struct {
    std::string xml;
    std::string place;
  } faults[] = {
      {"", "line 1, column 1: No document element found"},
      {"text", "line 1, column 5: No document element found"},
      {"<screen", "line 1, column 7: Error parsing start element tag"},
      {"<screen>\n  <widget name=a/>\n</screen>",
       "line 2, column 16: Error parsing element attribute"},
      {"<screen>\n\n</scren>", "line 3, column 3: Start-end tags mismatch"},
      {"<screen>", "line 1, column 8: Start-end tags mismatch"},
  };
  for (const auto& [xml, place] : faults) {
    EXPECT_EQ(complaint(xml), place) << xml;
  }
}

TEST(Skin, OtherRootElementIsNamedWithItsPlace) {
  Notices notices;
  EXPECT_EQ(complaint("<skin><screen/></skin>"),
            "line 1, column 2: the element \"skin\" is no screen");
  EXPECT_THROW(parseSkin("<screen/>", notices), SkinError);
}

TEST(Skin, WhatHasNoUsablePlaceIsLeftOutAndNamed) {
  const struct {
    const char* attributes;
    const char* complaint;
  } table[] = {
      {R"(position="0,0")", R"(no size)"},
      {R"(position="0,0" size="")", R"(no usable size: "")"},
      {R"(position="0,0" size="10")", R"(no usable size: "10")"},
      {R"(position="0,0" size="10,")", R"(no usable size: "10,")"},
      {R"(position="0,0" size=",10")", R"(no usable size: ",10")"},
      {R"(position="0,0" size="10,-1")", R"(no usable size: "10,-1")"},
      {R"(position="0,0" size="-1,10")", R"(no usable size: "-1,10")"},
      {R"(position="0,0" size="10,10,10")", R"(no usable size: "10,10,10")"},
      {R"(position="0,0" size="10px,10")", R"(no usable size: "10px,10")"},
      {R"(position="0,0" size="center,10")", R"(no usable size: "center,10")"},
      {R"(position="0,0" size="99999999999,1")", R"(no usable size: "99999999999,1")"},
      {R"(position="0,0" size="100001,1")", R"(no usable size: "100001,1")"},
      {R"(position="0,-100001" size="1,1")", R"(no usable position: "0,-100001")"},
      {R"(size="1,1")", R"(no position)"},
      {R"(size="1,1" position="center")", R"(no usable position: "center")"},
      {R"(size="1,1" position="1.5,0")", R"(no usable position: "1.5,0")"},
      {R"(size="1,1" position="0,middle")", R"(no usable position: "0,middle")"},
      {R"(size="1,1" position="0,")", R"(no usable position: "0,")"},
  };
  for (const auto& [attributes, expected] : table) {
    const std::string inner = std::string("\n <widget ") + attributes + "/>";
    Notices notices;
    EXPECT_TRUE(parseScreen(kScreen + inner + "</screen>", {}, notices).elements.empty());
    EXPECT_TRUE(parseSkin("<skin><screen " + std::string(attributes) + "/></skin>", notices)
                    .screens.empty());
    const std::string left_out = std::string(expected) + "; it is left out";
    EXPECT_EQ(notices.lines(),
              (std::vector{"line 2, column 3: the element \"widget\" has " + left_out,
                           "line 1, column 8: the element \"screen\" has " + left_out}));
    EXPECT_EQ(complaint(std::string("<screen ") + attributes + "/>"),
              std::string("line 1, column 2: the element \"screen\" has ") + expected);
  }
}

TEST(Skin, UnusableAttributeCountsAsNoneAndIsNamedWithItsElement) {
  const std::pair<const char*, std::vector<const char*>> table[] = {
      {"font", {"", "Regular", "Regular;", "Regular;0", "Regular;-3", "Regular;x"}},
      {"zPosition", {"", "x", "1.5"}},
      {"transparent", {"yes"}},
      {"foregroundColor", {"", "#12345", "#1234567", "#12345g", "red"}},
      {"backgroundColor", {"123456"}},
      {"scrollbarMode", {"show"}},
      {"itemHeight", {"", "0", "-1", "x"}},
  };
  const SkinElement plain{.kind = SkinElement::Kind::widget, .name = "", .area = {0, 0, 1, 1}};
  for (const auto& [name, values] : table) {
    for (const std::string value : values) {
      Notices notices;
      const SkinScreen screen =
          parseScreen(std::string(kScreen) + "<widget position=\"0,0\" size=\"1,1\" " + name +
                          "=\"" + value + "\"/></screen>",
                      {}, notices);
      EXPECT_EQ(screen.elements, std::vector{plain}) << name << value;
      EXPECT_EQ(
          notices.lines(),
          std::vector{std::string("line 1, column 42: the element \"widget\" has no usable ") +
                      name + ": \"" + value + "\""});
    }
  }
}

TEST(Skin, SettingsHoldForAllItsScreens) {
  Notices notices;
  const Skin skin = parseSkin(R"(
<skin>
  <output id="0"><resolution xres="1280" yres="720" bpp="32"/></output>
  <colors>
    <color name="warm" value="#ff8000"/>
    <color name="faint" value="#c0ffffff"/>
  </colors>
  <fonts><font filename="nmsbd.ttf" name="Bold" scale="90"/></fonts>
  <screen name="First" position="center,center" size="100,200" title="One" flags="wfNoBorder"
          backgroundColor="faint">
    <widget name="list" position="1,2" size="3,4" foregroundColor="warm"
            foregroundColorSelected="#010203" backgroundColorSelected="faint"
            scrollbarMode="showNever" itemHeight="30" transparent="1" noWrap="1"/>
    <eLabel text="Hello" position="5,6" size="7,8" backgroundColor="#ff000000"/>
  </screen>
  <screen name="Second" position="0,0" size="1,1"/>
</skin>)",
                              notices);
  EXPECT_EQ(skin.settings.width, 1280);
  EXPECT_EQ(skin.settings.height, 720);
  EXPECT_EQ(skin.settings.fonts, (decltype(skin.settings.fonts){{"Bold", "nmsbd.ttf"}}));
  const Colour warm{255, 128, 0};
  const Colour faint{255, 255, 255, 192};
  EXPECT_EQ(skin.settings.colours,
            (decltype(skin.settings.colours){{"warm", warm}, {"faint", faint}}));
  const SkinElement list{.kind = SkinElement::Kind::widget,
                         .name = "list",
                         .area = {1, 2, 3, 4},
                         .layout = {.wraps = false},
                         .is_transparent = true,
                         .foreground = warm,
                         .foreground_selected = Colour{1, 2, 3},
                         .background_selected = faint,
                         .scroll_bar = SkinElement::ScrollBar::never,
                         .row_height = 30};
  const SkinElement label{.kind = SkinElement::Kind::label,
                          .name = "Hello",
                          .area = {5, 6, 7, 8},
                          .background = Colour{0, 0, 0, 255}};
  const SkinScreen first{.area = {590, 260, 100, 200},
                         .title = "One",
                         .has_border = false,
                         .background = faint,
                         .elements = {list, label}};
  EXPECT_EQ(skin.screens,
            (decltype(skin.screens){{"First", first}, {"Second", {.area = {0, 0, 1, 1}}}}));
  EXPECT_EQ(notices.lines(),
            std::vector<std::string>{
                "the attribute \"scale\" of the element \"font\" is not understood"});
}

TEST(Skin, FaultyTemplateIsLeftOutAndNamedWithItsPlaceInTheFile) {
  Notices notices;
  const SkinScreen screen = parseScreen(kScreen + std::string(R"(
  <widget source="menu" position="0,0" size="1,1">
    <convert type="TemplatedMultiContent">
      {"template": [1],
       "fonts": [], "itemHeight": 9}
    </convert>
  </widget></screen>)"),
                                        {}, notices);
  EXPECT_EQ(screen.elements.at(0).rows, std::nullopt);
  EXPECT_EQ(notices.lines(),
            std::vector<std::string>{"line 4, column 21: the list's template is not understood: "
                                     "here should stand an entry"});
}

TEST(Skin, EveryPartOfASkinCountsAndIsNoticed) {
  Notices notices;
  const Skin skin = parseSkin(R"(<skin version="2">
<colors><color name="first" value="#010203"/></colors>
<colors><color name="second" value="first"/><colour/></colors>
<fonts><alias name="a"/></fonts>
<windowstyle/>
<output><resolution xres="100" yres="50" dpi="7"/></output></skin>)",
                              notices);
  EXPECT_EQ(skin.settings.colours,
            (decltype(skin.settings.colours){{"first", {1, 2, 3}}, {"second", {1, 2, 3}}}));
  EXPECT_EQ(skin.settings.width, 100);
  EXPECT_EQ(
      notices.lines(),
      (std::vector<std::string>{
          "the attribute \"version\" of the element \"skin\" is not understood",
          "the element \"windowstyle\" is not understood",
          "the element \"colour\" is not understood", "the element \"alias\" is not understood",
          "the attribute \"dpi\" of the element \"resolution\" is not understood"}));
}

TEST(Skin, UnusableResolutionAndColoursAreNoticed) {
  Notices notices;
  const Skin skin = parseSkin(R"(<skin>
<output><resolution xres="0" yres="x"/></output>
<colors><color name="odd" value="red"/></colors></skin>)",
                              notices);
  EXPECT_EQ(skin.settings.width, SkinSettings::kUsualWidth);
  EXPECT_EQ(skin.settings.height, SkinSettings::kUsualHeight);
  EXPECT_TRUE(skin.settings.colours.empty());
  EXPECT_EQ(notices.lines(),
            (std::vector<std::string>{
                "line 2, column 10: the element \"resolution\" has no usable xres: \"0\"",
                "line 2, column 10: the element \"resolution\" has no usable yres: \"x\"",
                "line 3, column 10: the element \"color\" has no usable value: \"red\""}));
}

/// The sample skins of the packaging, as they are read.
TEST(Skin, SampleSkinsAreUnderstood) {
  const struct {
    const char* file;
    int width;
    int height;
  } samples[] = {
      {"skin_sd.xml", 720, 576}, {"skin_hd.xml", 1280, 720}, {"skin_fhd.xml", 1920, 1080}};
  for (const auto& [file, width, height] : samples) {
    std::ifstream stream(std::string(SAMPLE_SKINS "/") + file);
    const std::string xml{std::istreambuf_iterator<char>(stream), {}};
    Notices notices;
    const Skin skin = parseSkin(xml, notices);
    EXPECT_EQ(skin.settings.width, width) << file;
    EXPECT_EQ(skin.settings.height, height) << file;
    EXPECT_EQ(skin.screens.size(), 2U) << file;
    EXPECT_TRUE(skin.screens.contains("Stowline")) << file;
    EXPECT_TRUE(skin.screens.contains("StowlineRestore")) << file;
    EXPECT_EQ(notices.lines(), std::vector<std::string>()) << file;
  }
}

}  // namespace
}  // namespace desk
