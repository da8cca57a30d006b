#include <gtest/gtest.h>

#include <string>

#include "desk/terminal/RowsView.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Draws the rows over a whole picture of this size.
Picture drawn(RowsView& view, const LayerView& layer, Size size,
              const Lettering& lettering = utf8()) {
  Picture picture{Canvas(size, lettering)};
  view.draw(picture, {0, 0, size.columns, size.rows}, layer);
  return picture;
}

std::string pictureOfRows(const LayerView& layer, Size size, const Lettering& lettering = utf8()) {
  RowsView view;
  return shown(drawn(view, layer, size, lettering).canvas);
}

TEST(RowsView, NoRowsNothingToSee) {
  EXPECT_EQ(pictureOfRows(list(0, 0), {12, 3}), "\n\n\n\n");
}

TEST(RowsView, OneRowHasTheCursor) {
  EXPECT_EQ(pictureOfRows(list(1, 0), {12, 3}), R"(
> row 0


)");
}

TEST(RowsView, RowsThatFitExactlyHaveNoBar) {
  EXPECT_EQ(pictureOfRows(list(3, 2), {12, 3}), R"(
  row 0
  row 1
> row 2
)");
}

TEST(RowsView, RowsThatDoNotFitHaveABar) {
  EXPECT_EQ(pictureOfRows(list(4, 0), {12, 3}), R"(
> row 0    █
  row 1    █
  row 2    ░
)");
}

TEST(RowsView, AsciiTerminalHasABarAndPicturesOfItsOwn) {
  Rows some = *manyRows(4);
  some.front().picture = "a.png";
  EXPECT_EQ(pictureOfRows({.rows = rows(some)}, {14, 2}, ascii()), R"(
> # row 0    #
    row 1    :
)");
}

TEST(RowsView, DescriptionsGiveEveryRowASecondLine) {
  const LayerView described = {.rows = rows({{"Backup", "save"}, {"Restore"}, {"Help", "read"}}),
                               .selected = 1};
  EXPECT_EQ(pictureOfRows(described, {16, 6}), R"(
  Backup
    save
> Restore

  Help
    read
)");
  EXPECT_EQ(pictureOfRows(described, {16, 5}), R"(
  Backup       █
    save       █
> Restore      █
               ░
               ░
)");
}

TEST(RowsView, PicturesStandBeforeTheTextsAndRowsWithoutOneAreIndentedAlike) {
  EXPECT_EQ(pictureOfRows({.rows = rows({{"Backup", "save", "backup.png"}, {"Exit", "leave"}}),
                           .selected = 1},
                          {16, 4}),
            R"(
  ▣ Backup
      save
>   Exit
      leave
)");
}

TEST(RowsView, RowThatDoesNotFitIsCutAndMarked) {
  EXPECT_EQ(
      pictureOfRows(
          {.rows = rows({{"Backup all", "and everything"}, {"日本語日本", "caf\u00e9\nbar"}})},
          {10, 4}),
      R"(
> Backup …
    and e…
  日本語…
    café\…
)");
  EXPECT_EQ(pictureOfRows({.rows = rows({{"Backup all"}, {"b"}})}, {10, 1}), R"(
> Backu… █
)");
}

TEST(RowsView, CursorRowAndDescriptionsHaveInksOfTheirOwn) {
  RowsView view;
  const Picture picture =
      drawn(view, {.rows = rows({{"one", "first", "1.png"}, {"two", "second", "2.png"}})}, {14, 4});
  EXPECT_EQ(inInk(picture.canvas, 0, Ink::cursor), "> ▣ one");
  EXPECT_EQ(inInk(picture.canvas, 1, Ink::cursor_description), "      first");
  EXPECT_EQ(inInk(picture.canvas, 2, Ink::picture), "  ▣");
  EXPECT_EQ(inInk(picture.canvas, 2, Ink::text), "    two");
  EXPECT_EQ(inInk(picture.canvas, 3, Ink::description), "      second");
  for (int column = 7; column < 14; ++column) {
    EXPECT_EQ(picture.canvas.at(column, 0).ink, Ink::cursor) << column;
    EXPECT_EQ(picture.canvas.at(column, 2).ink, Ink::text) << column;
  }
}

TEST(RowsView, ClickOnALineOfARowSelectsIt) {
  RowsView view;
  EXPECT_EQ(clicks(drawn(view, list(2, 0), {12, 3})), (Lines{"row:0 0,0 12x1", "row:1 0,1 12x1"}));
  const LayerView long_list = {.rows = rows({{"a", "x"}, {"b"}, {"c"}}), .selected = 2};
  const Picture picture = drawn(view, long_list, {12, 4});
  EXPECT_EQ(clicks(picture), (Lines{"row:1 0,0 10x2", "row:2 0,2 10x2"}));
  EXPECT_EQ(picture.actionAt(9, 1), "row:1");
  EXPECT_EQ(picture.actionAt(0, 2), "row:2");
  EXPECT_EQ(picture.actionAt(11, 2), "");  // the bar
}

TEST(RowsView, IsDrawnWithinItsAreaAlone) {
  Picture picture{Canvas({14, 4}, utf8())};
  for (int row = 0; row < 4; ++row) picture.canvas.write(0, row, "..............");
  RowsView().draw(picture, {2, 1, 10, 2}, list(2, 1));
  EXPECT_EQ(shown(picture.canvas), R"(
..............
..  row 0   ..
..> row 1   ..
..............
)");
}

}  // namespace
}  // namespace desk::terminal
