#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json console(const std::string& text, bool running = true) {
  return frame({{"screen", "Console"}, {"title", "Backup"}, {"text", text}, {"running", running}});
}

TEST(ConsoleView, RunningConsoleShowsItsOutput) {
  EXPECT_EQ(pictureOf(console("etc/passwd\n\netc/shadow\n")), R"(
┌─ Backup ─────────────────────────────────────────────────────┐
│etc/passwd                                                    │
│                                                              │
│etc/shadow                                                    │
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
└──────────────────────────────────────────────────── running ─┘

 l Log   ? Help
)");
}

TEST(ConsoleView, FinishedConsoleWithoutATitleSaysSo) {
  Json finished = console("", false);
  finished["title"] = "";
  EXPECT_EQ(pictureOf(finished), R"(
┌─ Console ────────────────────────────────────────────────────┐
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
└─────────────────────────────────────────────────── finished ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ConsoleView, EndOfALongOutputIsShown) {
  EXPECT_EQ(pictureOf(console(manyLines(100), false), kTerminal, ascii()), R"(
+- Backup -----------------------------------------------------+
|line 84                                                       |
|line 85                                                       |
|line 86                                                       |
|line 87                                                       |
|line 88                                                       |
|line 89                                                       |
|line 90                                                       |
|line 91                                                       |
|line 92                                                       |
|line 93                                                       |
|line 94                                                       |
|line 95                                                       |
|line 96                                                       |
|line 97                                                       |
|line 98                                                       |
|line 99                                                       |
+--------------------------------------------------- finished -+

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ConsoleView, LongLinesAreWrappedAndControlCharactersEscaped) {
  EXPECT_EQ(pictureOf(console("dos\r\nbar\rred\x1b[1m\ttab\n" + std::string(70, 'x') + "\n")),
            R"(
┌─ Backup ─────────────────────────────────────────────────────┐
│dos                                                           │
│bar                                                           │
│red\x1b[1m    tab                                             │
│xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx│
│xxxxxxxx                                                      │
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
└──────────────────────────────────────────────────── running ─┘

 l Log   ? Help
)");
}

TEST(ConsoleView, OfAnEndlessOutputTheEndIsShownFromTheBeginningOfALine) {
  std::string output(90, '#');
  for (int line = 0; line < 3000; ++line) output += "\n" + std::string(48, 'a');
  Television television(utf8());
  television.show(console(output), kStart);
  television.picture(kTerminal, kStart);
  television.take(action::kFirst);
  const Canvas canvas = television.picture(kTerminal, kStart).canvas;
  EXPECT_EQ(canvas.line(1), "│" + std::string(48, 'a') + "              │");
}

TEST(ConsoleView, OfAnEndlessLineTheEndIsShownFromTheBeginningOfACharacter) {
  for (const std::string end : {"", "\n"}) {
    std::string output;
    for (int count = 0; count < 40000; ++count) output += "€";
    Television television(utf8());
    television.show(console(output + end), kStart);
    television.picture(kTerminal, kStart);
    std::string line;
    for (int column = 0; column < 62; ++column) line += "€";
    EXPECT_EQ(television.picture(kTerminal, kStart).canvas.line(1), "│" + line + "│");
    television.take(action::kFirst);
    EXPECT_EQ(television.picture(kTerminal, kStart).canvas.line(1), "│" + line + "│");
  }
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

  /// Returns the first and the last line that is shown.
  std::string ends() {
    const Canvas canvas = television_.picture(kTerminal, kStart).canvas;
    const auto text = [&](int row) {
      std::string line = canvas.line(row);
      line = line.substr(3, line.find_last_of("0123456789") + 1 - 3);
      return line;
    };
    return text(1) + " to " + text(16);
  }

  Television television_{utf8()};
};

TEST_F(ScrolledConsole, KeysScrollItAndAreNotForTheGui) {
  EXPECT_EQ(ends(), "line 84 to line 99");
  const struct {
    const char* action;
    const char* ends;
  } steps[] = {
      {"up", "line 83 to line 98"},
      {"left", "line 67 to line 82"},
      {action::kPageUp, "line 51 to line 66"},
      {"down", "line 52 to line 67"},
      {action::kFirst, "line 0 to line 15"},
      {"up", "line 0 to line 15"},
      {"right", "line 16 to line 31"},
      {action::kPageDown, "line 32 to line 47"},
      {action::kLast, "line 84 to line 99"},
  };
  for (const auto& [action, expected] : steps) {
    EXPECT_EQ(television_.take(action), "") << action;
    EXPECT_EQ(ends(), expected) << action;
  }
  EXPECT_EQ(television_.take("ok"), "ok");
}

TEST_F(ScrolledConsole, FollowsItsOutputUntilAViewerScrollsBack) {
  show(150);
  EXPECT_EQ(ends(), "line 134 to line 149");
  television_.take("up");
  show(200);
  EXPECT_EQ(ends(), "line 133 to line 148");
  television_.take(action::kLast);
  show(250);
  EXPECT_EQ(ends(), "line 234 to line 249");
}

TEST_F(ScrolledConsole, NextConsoleIsAtItsEnd) {
  EXPECT_EQ(ends(), "line 84 to line 99");
  television_.take(action::kFirst);
  show(100, "Restore");
  EXPECT_EQ(ends(), "line 84 to line 99");
}

TEST_F(ScrolledConsole, LowerEdgeSaysHowMuchIsBelow) {
  const auto edge = [&] { return television_.picture(kTerminal, kStart).canvas.line(17); };
  EXPECT_TRUE(edge().ends_with("─ running ─┘")) << edge();
  television_.take(action::kFirst);
  EXPECT_TRUE(edge().ends_with("─ 84 more below, running ─┘")) << edge();
  television_.take("down");
  EXPECT_TRUE(edge().ends_with("─ 83 more below, running ─┘")) << edge();
}

}  // namespace
}  // namespace desk::terminal
