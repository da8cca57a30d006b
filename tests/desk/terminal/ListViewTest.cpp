#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Returns a menu with two of its colour keys labelled.
LayerView menuWithKeys() {
  return {.title = "Stowline",
          .rows = rows({{"Backup", "save the set-up"}, {"Restore", "bring it back"}}),
          .selected = 1,
          .content = ScreenContent{
              .texts = {{"key_red", "Exit"}, {"key_green", ""}, {"key_blue", "Help"}}}};
}

TEST(ListView, MenuWithItsTitleRowsPositionKeysAndHints) {
  EXPECT_EQ(pictureOf(menuWithKeys()), R"(
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

TEST(ListView, ScreenWithoutATitleIsHeadedByItsName) {
  EXPECT_EQ(boxOf({}), Lines{"0,0 64x18 Screen, nothing here"});
}

TEST(ListView, FillsALargerTerminal) {
  Lines expected = {"0,0 80x22 Screen, 1/20", "1  > row 0"};
  for (int row = 1; row < 20; ++row) {
    expected.push_back(std::to_string(row + 1) + "    row " + std::to_string(row));
  }
  EXPECT_EQ(boxOf(list(20, 0), {80, 24}), expected);
}

TEST(ListView, RowsKeysAndHintsCanBeClicked) {
  Television television(utf8());
  television.show(frame(menuWithKeys()));
  EXPECT_EQ(clicks(television.picture(kTerminal, kAtStart)),
            (Lines{"row:0 2,1 60x2", "row:1 2,3 60x2", "red 1,18 10x1", "blue 14,18 11x1",
                   "ok 1,19 8x1", "exit 12,19 8x1", "log 23,19 5x1", "help 31,19 6x1"}));
}

TEST(ListView, PlaceInAListIsKeptWhateverLiesOverItMeanwhile) {
  Television television(utf8());
  const auto archives = [](int selected) {
    LayerView layer = list(30, selected);
    layer.id = 1;
    return layer;
  };
  LayerView packages = list(30, 20);
  packages.id = 2;
  const auto top = [&](const Frame& frame) {
    television.show(frame);
    return television.picture(kTerminal, kAtStart).actionAt(2, 1);
  };
  EXPECT_EQ(top(frame(archives(29))), "row:14");
  EXPECT_EQ(top(frame(archives(20))), "row:14");
  EXPECT_EQ(top({.layers = {archives(20), packages}}), "row:5");
  EXPECT_EQ(top(frame(archives(20))), "row:14");
  EXPECT_EQ(top(frame(packages)), "row:5");
  EXPECT_EQ(top(frame(archives(20))), "row:5");
}

}  // namespace
}  // namespace desk::terminal
