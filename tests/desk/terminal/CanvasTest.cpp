#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "desk/terminal/Canvas.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Returns a canvas of `columns` with one row in which `text` stands.
Canvas rowWith(int columns, const std::string& text) {
  Canvas canvas({columns, 1}, utf8());
  canvas.write(0, 0, text);
  return canvas;
}

/// Returns the bytes of each cell of the first row.
Lines cells(const Canvas& canvas) {
  Lines bytes;
  for (int column = 0; column < canvas.size().columns; ++column) {
    bytes.push_back(canvas.at(column, 0).bytes);
  }
  return bytes;
}

TEST(Area, ContainsItsOwnCellsAlone) {
  const Area area = {2, 1, 3, 2};
  std::string inside = "\n";
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 6; ++column) inside += area.contains(column, row) ? "#" : ".";
    inside += "\n";
  }
  EXPECT_EQ(inside, R"(
......
..###.
..###.
......
)");
  EXPECT_EQ(area.inside(), (Area{3, 2, 1, 0}));
}

TEST(Canvas, NewOneIsBlank) {
  const Canvas canvas({3, 2}, utf8());
  EXPECT_EQ(shown(canvas), "\n\n\n");
  EXPECT_EQ(cells(canvas), (Lines{" ", " ", " "}));
  EXPECT_EQ(canvas.size(), (Size{3, 2}));
}

TEST(Canvas, WriteReturnsTheColumnsThatTheTextTakes) {
  const struct {
    const char* text;
    int x;
    int width;
    int columns;
  } writes[] = {
      {"", 0, 9, 0},        {"abc", 0, 9, 3},          {"abcdef", 0, 4, 4},
      {"abcdef", 6, 9, 4},  {"abc", 10, 9, 0},         {"\u65e5\u672c", 0, 3, 3},
      {"e\u0301", 0, 9, 1}, {"\u65e5\u672c", 0, 9, 4}, {"abc", 0, 0, 0},
  };
  for (const auto& [text, x, width, columns] : writes) {
    Canvas canvas({10, 1}, utf8());
    EXPECT_EQ(canvas.write(x, 0, text, Ink::text, width), columns) << text << " at " << x;
  }
}

TEST(Canvas, TextThatDoesNotFitIsCutAndMarked) {
  EXPECT_EQ(rowWith(5, "Backup").line(0), "Back…");
  EXPECT_EQ(rowWith(6, "Backup").line(0), "Backup");
  Canvas canvas({10, 1}, ascii());
  canvas.write(2, 0, "Backup", Ink::text, 4);
  EXPECT_EQ(canvas.line(0), "  Bac~");
}

TEST(Canvas, WhatLiesOutsideIsLeftOut) {
  Canvas canvas({4, 2}, utf8());
  for (const auto& [x, y] :
       std::vector<std::pair<int, int>>{{0, -1}, {0, 2}, {4, 0}, {9, 0}, {-2, 1}, {-9, 0}}) {
    canvas.write(x, y, "ab\u65e5");
  }
  EXPECT_EQ(shown(canvas), "\n\n\u65e5\n");
}

TEST(Canvas, WideGlyphThatIsHalfOutsideIsLeftOut) {
  Canvas canvas({3, 1}, utf8());
  canvas.write(-1, 0, "\u65e5ab");
  EXPECT_EQ(cells(canvas), (Lines{" ", "a", "b"}));
}

TEST(Canvas, WideGlyphTakesTwoCellsAndTheSecondHasNoBytes) {
  EXPECT_EQ(cells(rowWith(6, "a\u65e5e\u0301")), (Lines{"a", "\u65e5", "", "e\u0301", " ", " "}));
}

TEST(Canvas, WritingOverHalfOfAWideGlyphBlanksItsOtherHalf) {
  const Lines expected[] = {
      {"x", " ", "\u672c", "", " "},     {" ", "x", "\u672c", "", " "},
      {"\u65e5", "", "x", " ", " "},     {"\u65e5", "", " ", "x", " "},
      {"\u65e5", "", "\u672c", "", "x"},
  };
  for (int column = 0; column < 5; ++column) {
    Canvas canvas = rowWith(5, "\u65e5\u672c");
    canvas.write(column, 0, "x");
    EXPECT_EQ(cells(canvas), expected[column]) << column;
  }
}

TEST(Canvas, WideGlyphOverWideOnesLeavesNoHalves) {
  const Lines expected[] = {
      {"\u8a9e", "", "\u672c", ""},
      {" ", "\u8a9e", "", " "},
      {"\u65e5", "", "\u8a9e", ""},
  };
  for (int column = 0; column < 3; ++column) {
    Canvas canvas = rowWith(4, "\u65e5\u672c");
    canvas.write(column, 0, "\u8a9e");
    EXPECT_EQ(cells(canvas), expected[column]) << column;
  }
}

TEST(Canvas, ClearBlanksItsAreaAndTheHalvesBesideIt) {
  Canvas canvas({6, 3}, utf8());
  for (int row = 0; row < 3; ++row) canvas.write(0, row, "\u65e5\u672c\u8a9e");
  canvas.clear({1, 1, 4, 9}, Ink::cursor);
  EXPECT_EQ(shown(canvas), "\n\u65e5\u672c\u8a9e\n\n\n");
  EXPECT_EQ(canvas.at(1, 1).ink, Ink::cursor);
  EXPECT_EQ(canvas.at(5, 1).ink, Ink::text);
}

TEST(Canvas, CellsHaveTheInkOfWhatWasWrittenLast) {
  Canvas canvas({8, 1}, utf8());
  canvas.write(0, 0, "ab\u65e5cd", Ink::error);
  canvas.write(1, 0, "b", Ink::hint);
  EXPECT_EQ(inInk(canvas, 0, Ink::error), "a \u65e5cd");
  EXPECT_EQ(inInk(canvas, 0, Ink::hint), " b");
  EXPECT_EQ(canvas.at(3, 0).ink, Ink::error);
}

TEST(Canvas, LineEndsWithItsLastSign) {
  EXPECT_EQ(rowWith(9, "").line(0), "");
  EXPECT_EQ(rowWith(9, " a b  ").line(0), " a b");
  EXPECT_EQ(rowWith(9, "\u65e5").line(0), "\u65e5");
}

}  // namespace
}  // namespace desk::terminal
