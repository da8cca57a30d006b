#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

constexpr int kPage = 5;

/// Returns what a view of `page` lines makes of the rows.
Picture drawn(RowsView& view, const LayerView& layer, int page = kPage) {
  Picture picture{Canvas({20, page}, utf8())};
  view.draw(picture, {0, 0, 20, page}, layer);
  return picture;
}

/// Returns the row at the top of each picture while the cursor goes along `cursors`.
Lines tops(RowsView& view, int count, const std::vector<int>& cursors) {
  Lines actions;
  for (const int cursor : cursors) {
    actions.push_back(drawn(view, list(count, cursor)).actionAt(0, 0));
  }
  return actions;
}

TEST(RowsScrolling, CursorMovesTheRowsAsLittleAsNeeded) {
  RowsView view;
  EXPECT_EQ(
      tops(view, 20, {0, 4, 5, 6, 5, 3, 2, 1, 0}),
      (Lines{"row:0", "row:0", "row:1", "row:2", "row:2", "row:2", "row:2", "row:1", "row:0"}));
  EXPECT_EQ(tops(view, 20, {19, 10, 14, 0, 10}),
            (Lines{"row:15", "row:10", "row:10", "row:0", "row:6"}));
}

TEST(RowsScrolling, RowsFillThePageAgainWhenTheyBecomeFewer) {
  RowsView view;
  EXPECT_EQ(tops(view, 20, {19}), Lines{"row:15"});
  EXPECT_EQ(tops(view, 7, {6}), Lines{"row:2"});
  EXPECT_EQ(tops(view, 3, {2}), Lines{"row:0"});
  EXPECT_EQ(tops(view, 0, {0}), Lines{""});
}

TEST(RowsScrolling, CursorStaysInSightWhenThePageShrinksAndGrows) {
  RowsView view;
  const struct {
    int page;
    const char* top;
  } pages[] = {{5, "row:8"}, {3, "row:10"}, {1, "row:12"}, {6, "row:12"}, {20, "row:0"}};
  for (const auto& [page, top] : pages) {
    EXPECT_EQ(drawn(view, list(20, 12), page).actionAt(0, 0), top) << page;
  }
}

/// Returns the bar of each picture while the cursor goes along `cursors`.
Lines bars(int count, const std::vector<int>& cursors) {
  RowsView view;
  Lines results;
  for (const int cursor : cursors) {
    const Canvas canvas = drawn(view, list(count, cursor)).canvas;
    std::string bar;
    for (int row = 0; row < kPage; ++row) bar += canvas.at(19, row).bytes == "█" ? "#" : ".";
    results.push_back(bar);
  }
  return results;
}

TEST(RowsScrolling, ThumbIsAsLongAsTheShownPartAndReachesBothEnds) {
  EXPECT_EQ(bars(6, {0, 5}), (Lines{"####.", ".####"}));
  EXPECT_EQ(bars(10, {0, 7, 9}), (Lines{"##...", ".##..", "...##"}));
  EXPECT_EQ(bars(100, {0, 50, 98, 99}), (Lines{"#....", ".#...", "...#.", "....#"}));
}

TEST(RowsScrolling, PageWordsMoveTheCursorByWhatIsShown) {
  RowsView view;
  const struct {
    const char* action;
    int selected;
    const char* word;
  } table[] = {
      {action::kPageDown, 0, "row:5"},
      {action::kPageDown, 14, "row:19"},
      {action::kPageDown, 17, "row:19"},
      {action::kPageDown, 19, "row:19"},
      {action::kPageUp, 19, "row:14"},
      {action::kPageUp, 5, "row:0"},
      {action::kPageUp, 3, "row:0"},
      {action::kPageUp, 0, "row:0"},
      {action::kFirst, 12, "row:0"},
      {action::kLast, 12, "row:19"},
      {action::kHelp, 12, ""},
      {"up", 12, ""},
      {"ok", 12, ""},
  };
  for (const auto& [action, selected, word] : table) {
    const LayerView layer = list(20, selected);
    drawn(view, layer);
    EXPECT_EQ(view.wordFor(action, layer), word) << action << " from " << selected;
  }
}

TEST(RowsScrolling, PageOfRowsWithDescriptionsIsHalfAsLong) {
  RowsView view;
  Rows some = *manyRows(20);
  some.back().description = "described";
  const LayerView layer = {.rows = rows(some)};
  drawn(view, layer);
  EXPECT_EQ(view.wordFor(action::kPageDown, layer), "row:2");
}

TEST(RowsScrolling, NoRowsNoWords) {
  RowsView view;
  for (const char* action : {action::kPageUp, action::kPageDown, action::kFirst, action::kLast}) {
    EXPECT_EQ(view.wordFor(action, list(0, 0)), "") << action;
  }
}

}  // namespace
}  // namespace desk::terminal
