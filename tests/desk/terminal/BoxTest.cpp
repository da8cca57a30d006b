#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Returns a box of this size with `heading` and, in its lower edge, `note`.
std::string drawnBox(Size size, const std::string& heading, const std::string& note = "",
                     const Lettering& lettering = utf8()) {
  Canvas canvas(size, lettering);
  const Area area = {0, 0, size.columns, size.rows};
  canvas.box(area, heading);
  if (!note.empty()) canvas.boxNote(area, note);
  return shown(canvas);
}

TEST(Box, HasItsHeadingAtTheLeftAndItsNoteAtTheRight) {
  EXPECT_EQ(drawnBox({20, 3}, "Log", "3/9"), R"(
┌─ Log ────────────┐
│                  │
└──────────── 3/9 ─┘
)");
}

TEST(Box, IsDrawnInAsciiWhereTheTerminalKnowsNoBetter) {
  EXPECT_EQ(drawnBox({20, 3}, "Caf\u00e9", "3/9", ascii()), R"(
+- Caf\xc3\xa9 ----+
|                  |
+------------ 3/9 -+
)");
}

TEST(Box, HeadingThatDoesNotFitIsCut) {
  const struct {
    int width;
    const char* upper_edge;
  } boxes[] = {
      {13, "┌─ Restore ─┐"},
      {12, "┌─ Resto… ─┐"},
      {8, "┌─ R… ─┐"},
      {7, "┌─ … ─┐"},
  };
  for (const auto& [width, upper_edge] : boxes) {
    Canvas canvas({width, 2}, utf8());
    canvas.box({0, 0, width, 2}, "Restore");
    EXPECT_EQ(canvas.line(0), upper_edge);
  }
}

TEST(Box, WithoutAHeadingIsClosed) {
  EXPECT_EQ(drawnBox({4, 3}, ""), R"(
┌──┐
│  │
└──┘
)");
  EXPECT_EQ(drawnBox({2, 2}, ""), R"(
┌┐
└┘
)");
}

TEST(Box, CoversWhatIsBelow) {
  Canvas canvas({8, 5}, utf8());
  for (int row = 0; row < 5; ++row) canvas.write(0, row, "\u65e5\u672c\u8a9e\u65e5");
  canvas.box({1, 1, 6, 3}, "");
  EXPECT_EQ(shown(canvas), R"(
日本語日
 ┌────┐
 │    │
 └────┘
日本語日
)");
}

TEST(Box, PartsOutsideOfTheCanvasAreLeftOut) {
  Canvas canvas({6, 3}, utf8());
  canvas.box({-1, -1, 5, 3}, "");
  canvas.box({4, 1, 9, 9}, "");
  EXPECT_EQ(shown(canvas), R"(
   │
───┘┌─
    │
)");
}

TEST(Box, HasInksOfItsOwnForBorderHeadingAndNote) {
  Canvas canvas({16, 3}, utf8());
  canvas.box({0, 0, 16, 3}, "Log", Ink::error, Ink::hint);
  canvas.boxNote({0, 0, 16, 3}, "note", Ink::notice);
  EXPECT_EQ(inInk(canvas, 0, Ink::error), "┌─     ────────┐");
  EXPECT_EQ(inInk(canvas, 0, Ink::hint), "   Log");
  EXPECT_EQ(inInk(canvas, 1, Ink::error), "│              │");
  EXPECT_EQ(inInk(canvas, 2, Ink::notice), "         note");
}

}  // namespace
}  // namespace desk::terminal
