#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

LayerView console(const std::string& output, bool is_running = true) {
  return {.id = 1,
          .screen = "Console",
          .title = "Backup",
          .content = ConsoleContent{.output = output, .is_running = is_running}};
}

TEST(ConsoleView, ShowsItsOutputAndWhetherItRuns) {
  EXPECT_EQ(boxOf(console("etc/passwd\n\netc/shadow\n")),
            (Lines{"0,0 64x18 Backup, running", "1 etc/passwd", "3 etc/shadow"}));
  EXPECT_EQ(boxOf(console("", false)), Lines{"0,0 64x18 Backup, finished"});
}

TEST(ConsoleView, LongLinesAreWrappedAndControlCharactersEscaped) {
  EXPECT_EQ(boxOf(console("dos\r\nbar\rred\x1b[1m\ttab\n" + std::string(70, 'x') + "\n")),
            (Lines{"0,0 64x18 Backup, running", "1 dos", "2 bar", "3 red\\x1b[1m    tab",
                   "4 " + std::string(62, 'x'), "5 xxxxxxxx"}));
}

/// A console of 100 lines, at its end, on the least terminal.
class ScrolledConsole : public testing::Test {
 protected:
  ScrolledConsole() { show(100); }

  void show(int lines, std::uint64_t id = 1) {
    LayerView shown = console(manyLines(lines));
    shown.id = id;
    television_.show(frame(shown));
  }

  /// Returns what the edges say, the first line and the last.
  Lines ends() {
    const Lines box = boxes(television_.picture(kTerminal, kAtStart).canvas).at(0);
    return {box.front(), box.at(1), box.back()};
  }

  Television television_{utf8()};
};

TEST_F(ScrolledConsole, KeysScrollItAndAreNotForTheGui) {
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, running", "1 line 84", "16 line 99"}));
  EXPECT_EQ(television_.take("up"), "");
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, 1 more below, running", "1 line 83", "16 line 98"}));
  EXPECT_EQ(television_.take("left"), "");
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, 17 more below, running", "1 line 67", "16 line 82"}));
  EXPECT_EQ(television_.take(action::kFirst), "");
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, 84 more below, running", "1 line 0", "16 line 15"}));
  EXPECT_EQ(television_.take("ok"), "ok");
}

TEST_F(ScrolledConsole, StaysWhereAViewerHasScrolledUntilTheNextConsole) {
  ends();
  television_.take(action::kFirst);
  show(200);
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, 184 more below, running", "1 line 0", "16 line 15"}));
  show(100, 2);
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Backup, running", "1 line 84", "16 line 99"}));
}

}  // namespace
}  // namespace desk::terminal
