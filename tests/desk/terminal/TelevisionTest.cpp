#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "desk/terminal/Television.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

Frame menu() {
  return frame({.title = "Stowline",
                .rows = rows({{"Backup"}, {"Restore"}}),
                .content = ScreenContent{.texts = {{"key_red", "Exit"}}}});
}

/// A television that shows a menu on the least terminal.
class TelevisionTest : public testing::Test {
 protected:
  TelevisionTest() { television_.show(menu()); }

  Picture picture(const Moment& moment = kAtStart) {
    return television_.picture(kTerminal, moment);
  }

  std::string screen() { return shown(picture().canvas); }

  std::string lastLine(const Moment& moment = kAtStart) { return picture(moment).canvas.line(19); }

  Television television_{utf8()};
};

constexpr const char* kHints = " Enter OK   Esc Exit   l Log   ? Help";

TEST_F(TelevisionTest, LegendNamesTheLabelledKeysInTheirOrder) {
  const struct {
    std::map<std::string, std::string> texts;
    const char* legend;
  } legends[] = {
      {{}, ""},
      {{{"key_red", ""}, {"status", "x"}}, ""},
      {{{"key_blue", "Help"}}, " [blue] Help"},
      {{{"key_blue", "D"}, {"key_yellow", "C"}, {"key_green", "B"}, {"key_red", "A"}},
       " [red] A   [green] B   [yellow] C   [blue] D"},
      {{{"key_red", "\u65e5\u672c"}, {"key_green", ""}, {"key_yellow", "b"}},
       " [red] \u65e5\u672c   [yellow] b"},
      {{{"key_red", std::string(30, 'r')}, {"key_green", std::string(30, 'g')}},
       " [red] rrrrrrrrrrrrrrrrrrrrrrrrrrrrrr   [green] ggggggggggggggg…"},
  };
  for (const auto& [texts, legend] : legends) {
    television_.show(frame({.content = ScreenContent{.texts = texts}}));
    EXPECT_EQ(picture().canvas.line(18), legend);
  }
}

TEST_F(TelevisionTest, WordsOfTheDeskArePassedOn) {
  for (const char* word : {"up", "down", "left", "right", "ok", "exit", "red", "0", "row:1", ""}) {
    EXPECT_EQ(television_.take(word), word);
  }
}

TEST_F(TelevisionTest, ActionsThatMoveTheCursorBecomeWords) {
  picture();
  EXPECT_EQ(television_.take(action::kLast), "row:1");
  EXPECT_EQ(television_.take(action::kPageDown), "row:1");
  EXPECT_EQ(television_.take(action::kPageUp), "row:0");
  EXPECT_EQ(television_.take(action::kFirst), "row:0");
}

TEST_F(TelevisionTest, HelpLiesOverThePicture) {
  EXPECT_EQ(television_.take(action::kHelp), "");
  EXPECT_EQ(boxes(picture().canvas).at(1),
            (Lines{
                "5,2 53x15 Keys, any key goes on",
                "1  Up Down            move, or scroll a text",
                "2  Left Right         ten rows back or on",
                "3  Page Up, Page Down a page back or on",
                "4  Home End           the first, the last row",
                "5  Enter              OK",
                "6  Esc q Backspace    exit",
                "7  F1 r   F2 g        red, green",
                "8  F3 y   F4 b        yellow, blue",
                "9  0 to 9             the number keys",
                "10  l                  log lines and commands, or not",
                "11  Ctrl-L             draw anew",
                "12  Ctrl-C             end at once",
                "13  mouse, wheel       a row or a key, up and down",
            }));
}

TEST_F(TelevisionTest, AnyKeyOrClickEndsTheHelpAndDoesNothingElse) {
  const std::string before = screen();
  for (const char* action : {action::kHelp, action::kLog, action::kLast, "ok", "row:1", ""}) {
    television_.take(action::kHelp);
    EXPECT_EQ(clicks(picture()), Lines{"help 0,0 64x20"});
    EXPECT_EQ(television_.take(action), "") << action;
    EXPECT_EQ(screen(), before) << action;
  }
}

TEST_F(TelevisionTest, LogTakesAThirdOfTheTerminalAndGoesAgain) {
  const std::string before = screen();
  for (int line = 0; line < 5; ++line) {
    television_.log("$ ", "command " + std::to_string(line), Ink::description);
  }
  EXPECT_EQ(screen(), before);
  EXPECT_EQ(television_.take(action::kLog), "");
  EXPECT_EQ(boxes(picture().canvas),
            (std::vector<Lines>{{"0,0 64x12 Stowline, 1/2", "1  > Backup", "2    Restore"},
                                {"0,12 64x6 Log", "1 $ command 1", "2 $ command 2", "3 $ command 3",
                                 "4 $ command 4"}}));
  EXPECT_EQ(television_.take(action::kLog), "");
  EXPECT_EQ(screen(), before);
}

TEST_F(TelevisionTest, WhileSomethingRunsNoKeysForTheGuiAreOffered) {
  television_.show(frame({.content = ConsoleContent{.is_running = true}}));
  EXPECT_EQ(clicks(picture()), (Lines{"log 1,19 5x1", "help 9,19 6x1"}));
  television_.show(frame({.content = ConsoleContent{.is_running = false}}));
  EXPECT_EQ(lastLine(), kHints);
}

TEST_F(TelevisionTest, NoticeStandsInTheLastLineUntilTheNextKey) {
  television_.say("The GUI has been started again.", Ink::error);
  EXPECT_EQ(lastLine(), " The GUI has been started again.");
  EXPECT_EQ(inInk(picture().canvas, 19, Ink::error), " The GUI has been started again.");
  EXPECT_EQ(picture().actionAt(1, 19), "");
  EXPECT_EQ(television_.take("down"), "down");
  EXPECT_EQ(lastLine(), kHints);
}

TEST_F(TelevisionTest, LaterNoticeReplacesTheOneBeforeAndALongOneIsCut) {
  television_.say("first", Ink::notice);
  television_.say(std::string(80, 'x') + "\n", Ink::notice);
  EXPECT_EQ(lastLine(), " " + std::string(61, 'x') + "…");
}

TEST_F(TelevisionTest, BusyLineHidesTheNoticeAndCountsFullSeconds) {
  television_.say("notice", Ink::notice);
  const struct {
    int passed;
    const char* line;
  } times[] = {
      {0, " | busy for 0 s"},      {250, " / busy for 0 s"},  {500, " - busy for 0 s"},
      {750, " \\ busy for 0 s"},   {999, " \\ busy for 0 s"}, {1000, " | busy for 1 s"},
      {61250, " / busy for 61 s"},
  };
  for (const auto& [passed, line] : times) {
    EXPECT_EQ(lastLine({.now = kStart + milliseconds(passed), .busy_since = kStart}), line);
  }
  EXPECT_EQ(lastLine(), " notice");
}

TEST_F(TelevisionTest, BusyLineNamesTheCommandThatRuns) {
  television_.setCommand("tar czf " + std::string(80, 'x'));
  EXPECT_EQ(lastLine(), kHints);
  EXPECT_EQ(lastLine({.now = kStart + seconds(2), .busy_since = kStart}),
            " | busy for 2 s: tar czf " + std::string(37, 'x') + "…");
  television_.setCommand("");
  EXPECT_EQ(lastLine({.now = kStart, .busy_since = kStart}), " | busy for 0 s");
}

}  // namespace
}  // namespace desk::terminal
