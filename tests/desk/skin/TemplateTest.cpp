#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "desk/skin/Expression.h"
#include "desk/skin/ListTemplate.h"

namespace desk {
namespace {

using Lines = std::vector<std::string>;

TEST(Template, RowShowsTextsAndPicturesWhereItSays) {
  Notices notices;
  const ListTemplate rows = parseTemplate(R"(
    {"template": [
      MultiContentEntryPixmapAlphaTest(pos = (8,9), size = (52,53), png = 3),
      MultiContentEntryText(pos = (76,4), size = (856,34), font = 0,
                            flags = RT_HALIGN_RIGHT|RT_VALIGN_CENTER, text = 1),
      MultiContentEntryText(pos=(-1, 0), size=(5,6), font=1, flags=RT_WRAP, text='>',
                            color=0x00ff8000, color_sel = 0x80000001),
    ],
    "fonts": [gFont("Regular", 26), gFont('Bold', 20),],
    "itemHeight": 68}
  )",
                                          notices);
  const ListTemplate expected{
      .row_height = 68,
      .entries = {{.kind = RowEntry::Kind::picture,
                   .area = {8, 9, 52, 53},
                   .item = 3,
                   .layout = {.font = {"Regular", 26}, .wraps = false}},
                  {.kind = RowEntry::Kind::text,
                   .area = {76, 4, 856, 34},
                   .item = 1,
                   .layout = {{"Regular", 26}, Align::end, Align::center, false}},
                  {.kind = RowEntry::Kind::text,
                   .area = {-1, 0, 5, 6},
                   .item = {},
                   .text = ">",
                   .layout = {.font = {"Bold", 20}},
                   .colour = Colour{0xff, 0x80, 0, 0},
                   .colour_selected = Colour{0, 0, 1, 0x80}}}};
  EXPECT_EQ(rows, expected);
  EXPECT_EQ(notices.lines(), Lines());
}

TEST(Template, WhatIsNotUnderstoodIsLeftOutAndNoticedOnce) {
  Notices notices;
  const ListTemplate rows = parseTemplate(
      R"({"template": [MultiContentEntryProgress(pos=(0,0)), MultiContentEntryProgress(),
          MultiContentEntryText(pos=(1,2), size=(3,4), text=0, border=1, flags=RT_BLEND|RT_BLEND)],
          "fonts": [], "itemHeight": 1, "selectionEnabled": False})",
      notices);
  EXPECT_EQ(rows.entries, (std::vector<RowEntry>{{.kind = RowEntry::Kind::text,
                                                  .area = {1, 2, 3, 4},
                                                  .item = 0,
                                                  .layout = {.wraps = false}}}));
  EXPECT_EQ(notices.lines(),
            (Lines{"the list's entry \"MultiContentEntryProgress\" is not understood",
                   "MultiContentEntryText: \"border\" is not understood",
                   "the list's flag \"RT_BLEND\" is not understood",
                   "the list's \"selectionEnabled\" is not understood"}));
}

TEST(Template, FaultIsNamedWithItsPlace) {
  const std::string entry = "MultiContentEntryText(pos=(1,2), size=(3,4), text=0)";
  const auto whole = [](const std::string& entries) {
    return "{\"template\": [" + entries + "], \"fonts\": [], \"itemHeight\": 9}";
  };
  const std::pair<std::string, std::string> faults[] = {
      {"", "0: it ends too soon"},
      {"{", "1: it ends too soon"},
      {"[]", "0: here should stand a dictionary"},
      {"{} {}", "3: '{' is not understood"},
      {"{1: 2}", "1: '1' is no key"},
      {"{\"a\" 2}", "5: '2' stands where ':' should"},
      {"{\"a\": 2 3}", "8: '3' stands where ',' or '}' should"},
      {"{\"a\": \"2}", "6: '\"' begins a text without an end"},
      {"{\"a\": -}", "6: '-' begins no number"},
      {"{\"a\": 99999999999999999999}", "6: '9' begins no number"},
      {"{\"a\": " + std::string(100, '['), "25: '[' lies too deep"},
      {"{}", "0: here should stand \"template\", a list of entries"},
      {"{\"template\": 1}", "13: here should stand a list of entries"},
      {"{\"template\": [], \"fonts\": [], \"itemHeight\": 0}",
       "0: here should stand an \"itemHeight\" above 0"},
      {"{\"template\": [], \"fonts\": [gFont(1, 2)], \"itemHeight\": 9}",
       "27: here should stand gFont(\"NAME\", SIZE)"},
      {whole("1"), "14: here should stand an entry"},
      {whole("MultiContentEntryText(text=0)"), "14: here should stand \"pos\", two numbers"},
      {whole("MultiContentEntryText(pos=(1,2), size=(1))"), "52: here should stand two numbers"},
      {whole("MultiContentEntryText(pos=(1,2), size=(1,-1))"),
       "14: here should stand a size that is not negative"},
      {whole("MultiContentEntryText(pos=(1,2), size=(1,1), font=0)"),
       "64: here should stand the index of a font"},
  };
  for (const auto& [text, complaint] : faults) {
    Notices notices;
    try {
      parseTemplate(text, notices);
      ADD_FAILURE() << text;
    } catch (const ExpressionError& error) {
      EXPECT_EQ(std::to_string(error.offset) + ": " + error.what(), complaint) << text;
    }
  }
}

}  // namespace
}  // namespace desk
