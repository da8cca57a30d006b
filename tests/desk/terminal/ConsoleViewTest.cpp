#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json console(const std::string& text, bool running = true) {
  return frame({{"screen", "Console"}, {"title", "Backup"}, {"text", text}, {"running", running}});
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

  void show(int lines, const char* title = "Backup") {
    Json shown = console(manyLines(lines));
    shown["title"] = title;
    television_.show(shown, kStart);
  }

  /// Returns what the edges say, the first line and the last.
  Lines ends() {
    const Lines box = boxes(television_.picture(kTerminal, kStart).canvas).at(0);
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
  show(100, "Restore");
  EXPECT_EQ(ends(), (Lines{"0,0 64x18 Restore, running", "1 line 84", "16 line 99"}));
}

}  // namespace
}  // namespace desk::terminal
