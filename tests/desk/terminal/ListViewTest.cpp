#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Returns a menu with two of its colour keys labelled.
Json menu(const Json& more = {}) {
  Json result =
      frame({{"title", "Stowline"},
             {"widgets", {{"key_red", "Exit"}, {"key_green", ""}, {"key_blue", "Help"}}},
             {"rows", rows({{"Backup", "save the set-up"}, {"Restore", "bring it back"}})},
             {"selected", 1}});
  if (!more.is_null()) result.update(more);
  return result;
}

TEST(ListView, MenuWithItsTitleRowsPositionKeysAndHints) {
  EXPECT_EQ(pictureOf(menu()), R"(
┌─ Stowline ───────────────────────────────────────────────────┐
│   Backup                                                     │
│     save the set-up                                          │
│ > Restore                                                    │
│     bring it back                                            │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
└──────────────────────────────────────────────────────── 2/2 ─┘
 [red] Exit   [blue] Help
 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ListView, AsciiTerminalShowsTheSameInAscii) {
  EXPECT_EQ(
      pictureOf(menu({{"title", "Caf\u00e9"}, {"pictures", {"a.png", ""}}}), kTerminal, ascii()),
      R"(
+- Caf\xc3\xa9 ------------------------------------------------+
|   # Backup                                                   |
|       save the set-up                                        |
| >   Restore                                                  |
|       bring it back                                          |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
|                                                              |
+-------------------------------------------------------- 2/2 -+
 [red] Exit   [blue] Help
 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ListView, ScreenWithoutATitleIsHeadedByItsName) {
  EXPECT_EQ(pictureOf(frame()), R"(
┌─ Screen ─────────────────────────────────────────────────────┐
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
│                                                              │
└─────────────────────────────────────────────── nothing here ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ListView, LongListHasABarAndSaysWhereTheCursorIs) {
  EXPECT_EQ(pictureOf(frame({{"title", "Archives"}, {"rows", manyRows(10000)}, {"selected", 500}})),
            R"(
┌─ Archives ───────────────────────────────────────────────────┐
│   row 485                                                  █ │
│   row 486                                                  ░ │
│   row 487                                                  ░ │
│   row 488                                                  ░ │
│   row 489                                                  ░ │
│   row 490                                                  ░ │
│   row 491                                                  ░ │
│   row 492                                                  ░ │
│   row 493                                                  ░ │
│   row 494                                                  ░ │
│   row 495                                                  ░ │
│   row 496                                                  ░ │
│   row 497                                                  ░ │
│   row 498                                                  ░ │
│   row 499                                                  ░ │
│ > row 500                                                  ░ │
└────────────────────────────────────────────────── 501/10000 ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ListView, ListFillsALargerTerminal) {
  EXPECT_EQ(
      pictureOf(frame({{"title", "Archives"}, {"rows", manyRows(16)}, {"selected", 15}}), {80, 24}),
      R"(
┌─ Archives ───────────────────────────────────────────────────────────────────┐
│   row 0                                                                      │
│   row 1                                                                      │
│   row 2                                                                      │
│   row 3                                                                      │
│   row 4                                                                      │
│   row 5                                                                      │
│   row 6                                                                      │
│   row 7                                                                      │
│   row 8                                                                      │
│   row 9                                                                      │
│   row 10                                                                     │
│   row 11                                                                     │
│   row 12                                                                     │
│   row 13                                                                     │
│   row 14                                                                     │
│ > row 15                                                                     │
│                                                                              │
│                                                                              │
│                                                                              │
│                                                                              │
└────────────────────────────────────────────────────────────────────── 16/16 ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ListView, RowsKeysAndHintsCanBeClicked) {
  Television television(utf8());
  television.show(menu(), kStart);
  const Picture picture = television.picture(kTerminal, kStart);
  EXPECT_EQ(clicks(picture),
            (std::vector<std::string>{"row:0 2,1 60x2", "row:1 2,3 60x2", "red 1,18 10x1",
                                      "blue 14,18 11x1", "ok 1,19 8x1", "exit 12,19 8x1",
                                      "log 23,19 5x1", "help 31,19 6x1"}));
  const struct {
    int column;
    int row;
    const char* action;
  } places[] = {
      {1, 1, ""},       {2, 1, "row:0"}, {61, 2, "row:0"}, {62, 2, ""},      {2, 3, "row:1"},
      {2, 5, ""},       {0, 18, ""},     {1, 18, "red"},   {10, 18, "red"},  {11, 18, ""},
      {14, 18, "blue"}, {8, 19, "ok"},   {9, 19, ""},      {36, 19, "help"}, {37, 19, ""},
  };
  for (const auto& [column, row, action] : places) {
    EXPECT_EQ(picture.actionAt(column, row), action) << column << "," << row;
  }
}

TEST(ListView, PlaceInAListIsKeptUntilAnotherScreenOpens) {
  Television television(utf8());
  const auto top = [&](const char* title, int selected) {
    television.show(frame({{"title", title}, {"rows", manyRows(30)}, {"selected", selected}}),
                    kStart);
    return television.picture(kTerminal, kStart).actionAt(2, 1);
  };
  EXPECT_EQ(top("Archives", 29), "row:14");
  EXPECT_EQ(top("Archives", 20), "row:14");
  EXPECT_EQ(top("Packages", 20), "row:5");
}

}  // namespace
}  // namespace desk::terminal
