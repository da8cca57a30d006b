#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "skin/Skin.h"

namespace desk {
namespace {

constexpr const char* kScreen = R"(<screen position="10,20" size="400,300">)";

/// Returns the one element of a screen of 400x300.
SkinElement elementOf(const std::string& xml) {
  const SkinScreen screen = parseScreen(kScreen + xml + "</screen>");
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
    parseScreen(xml);
    return "";
  } catch (const SkinError& error) {
    return error.what();
  }
}

TEST(Skin, ScreenHasItsPlaceAndItsElements) {
  const SkinScreen screen = parseScreen(R"(
<screen name="Any" position="10,20" size="400,300" title="Any">
  <widget name="text" position="1,2" size="3,4" font="Regular;22" halign="center" valign="bottom"/>
  <widget source="key_red" render="Label" position="5,6" size="7,8" halign="right" valign="center"/>
  <ePixmap pixmap="/pictures/a.png" position="9,10" size="11,12"/>
</screen>)");
  EXPECT_EQ(screen.area, (SkinArea{10, 20, 400, 300}));
  EXPECT_EQ(screen.elements,
            (std::vector<SkinElement>{
                {SkinElement::Kind::text, "text", {1, 2, 3, 4}, 22, Align::center, Align::end},
                {SkinElement::Kind::text, "key_red", {5, 6, 7, 8}, 20, Align::end, Align::center},
                {SkinElement::Kind::picture, "/pictures/a.png", {9, 10, 11, 12}},
            }));
}

TEST(Skin, ScreenWithoutElementsIsEmpty) {
  const SkinScreen screen =
      parseScreen(R"(<?xml version="1.0"?><screen position="0,0" size="0,0"/>)");
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
    EXPECT_EQ(parseScreen("<screen " + std::string(attributes) + "/>").area, area) << attributes;
  }
}

TEST(Skin, CenterOfAnElementIsThatOfItsScreen) {
  EXPECT_EQ(elementOf(R"(<widget name="a" position="center,center" size="100,50"/>)").area,
            (SkinArea{150, 125, 100, 50}));
  EXPECT_EQ(elementOf(R"(<ePixmap pixmap="a" position="center,7" size="25,25"/>)").area,
            (SkinArea{187, 7, 25, 25}));
}

TEST(Skin, FontSizeFollowsItsName) {
  EXPECT_EQ(widget("").font_size, 20);
  EXPECT_EQ(widget(R"(font="Regular;1")").font_size, 1);
  EXPECT_EQ(widget(R"(font="Some Font;48")").font_size, 48);
}

TEST(Skin, AlignmentThatIsNotKnownIsAtTheBeginning) {
  const struct {
    const char* value;
    Align align;
  } values[] = {{"left", Align::begin},  {"top", Align::begin},   {"center", Align::center},
                {"right", Align::end},   {"bottom", Align::end},  {"", Align::begin},
                {"block", Align::begin}, {"Center", Align::begin}};
  for (const auto& [value, align] : values) {
    EXPECT_EQ(widget("halign=\"" + std::string(value) + "\"").halign, align) << value;
    EXPECT_EQ(widget("valign=\"" + std::string(value) + "\"").valign, align) << value;
  }
  EXPECT_EQ(widget("").halign, Align::begin);
  EXPECT_EQ(widget("").valign, Align::begin);
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

TEST(Skin, OtherElementsAreLeftOut) {
  const SkinScreen screen =
      parseScreen(std::string(kScreen) +
                  "<!-- a comment --><eLabel text=\"x\"/>text"
                  "<Widget/><convert type=\"x\"><widget/></convert></screen>");
  EXPECT_TRUE(screen.elements.empty());
}

TEST(Skin, LowestElementComesFirstAndEqualOnesKeepTheirOrder) {
  constexpr const char* kDepths[] = {"1", "0", "-1", "", "nonsense"};
  std::string xml = kScreen;
  for (int index = 0; index < 50; ++index) {
    xml += "<widget name=\"" + std::to_string(index) +
           R"(" position="0,0" size="1,1" zPosition=")" + kDepths[index % 5] + "\"/>";
  }
  std::vector<std::string> names;
  for (const SkinElement& element : parseScreen(xml + "</screen>").elements) {
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
    EXPECT_EQ(complaint(xml), "the skin is faulty at " + place) << xml;
  }
}

TEST(Skin, OtherRootElementIsNoScreen) {
  EXPECT_EQ(complaint("<skin><screen/></skin>"), "the skin has no element \"screen\"");
}

TEST(Skin, UnusableSizePositionOrFontIsNamedWithItsElement) {
  const struct {
    const char* attributes;
    const char* complaint;
  } table[] = {
      {R"(position="0,0")", R"(size: "")"},
      {R"(position="0,0" size="")", R"(size: "")"},
      {R"(position="0,0" size="10")", R"(size: "10")"},
      {R"(position="0,0" size="10,")", R"(size: "10,")"},
      {R"(position="0,0" size=",10")", R"(size: ",10")"},
      {R"(position="0,0" size="10,-1")", R"(size: "10,-1")"},
      {R"(position="0,0" size="-1,10")", R"(size: "-1,10")"},
      {R"(position="0,0" size="10,10,10")", R"(size: "10,10,10")"},
      {R"(position="0,0" size="10px,10")", R"(size: "10px,10")"},
      {R"(position="0,0" size="center,10")", R"(size: "center,10")"},
      {R"(position="0,0" size="99999999999,1")", R"(size: "99999999999,1")"},
      {R"(position="0,0" size="100001,1")", R"(size: "100001,1")"},
      {R"(position="0,-100001" size="1,1")", R"(position: "0,-100001")"},
      {R"(size="1,1")", R"(position: "")"},
      {R"(size="1,1" position="center")", R"(position: "center")"},
      {R"(size="1,1" position="1.5,0")", R"(position: "1.5,0")"},
      {R"(size="1,1" position="0,middle")", R"(position: "0,middle")"},
      {R"(size="1,1" position="0,")", R"(position: "0,")"},
  };
  for (const auto& [attributes, expected] : table) {
    const std::string inner = std::string("<widget ") + attributes + "/>";
    EXPECT_EQ(complaint(kScreen + inner + "</screen>"),
              std::string("the skin's element \"widget\" has no usable ") + expected);
    EXPECT_EQ(complaint(std::string("<screen ") + attributes + "/>"),
              std::string("the skin's element \"screen\" has no usable ") + expected);
  }
  for (const std::string font :
       {"", "Regular", "Regular;", "Regular;0", "Regular;-3", "Regular;x"}) {
    EXPECT_EQ(complaint(kScreen + ("<ePixmap position=\"0,0\" size=\"1,1\" font=\"" + font) +
                        "\"/></screen>"),
              "the skin's element \"ePixmap\" has no usable font: \"" + font + "\"");
  }
}

}  // namespace
}  // namespace desk
