#include "desk/model/ConsoleLayer.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

struct ConsoleTest : SessionTest {
  void openConsole(const Lines& commands) {
    session.open(Console{.title = "Running", .cmdlist = commands}, note("closed"));
  }

  const Gate gate;
};

TEST_F(ConsoleTest, RunsTheCommandsInOrderAndShowsBothOutputs) {
  openConsole({"echo one", "echo two >&2", "echo three"});
  EXPECT_EQ(session.top()->title(), "Running");
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{"one\ntwo\nthree\n"});
  EXPECT_EQ(notes.lines,
            (Lines{"command: echo one", "command: echo two >&2", "command: echo three"}));
}

TEST_F(ConsoleTest, CommandStartsWhenTheFormerHasEnded) {
  openConsole({gate.wait(), "echo second"});
  EXPECT_EQ(notes.lines, Lines{"command: " + gate.wait()});
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{.is_running = true});
  gate.open();
  runToEnd(jobs);
  EXPECT_EQ(notes.lines, (Lines{"command: " + gate.wait(), "command: echo second"}));
}

TEST_F(ConsoleTest, GoesOnBehindAFailedCommandAndShowsItsStatus) {
  openConsole({"exit 3", "kill -9 $$", "/no/such/script.sh 2>/dev/null", "echo still here"});
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(),
            ConsoleContent{"[exit status 3]\n[exit status 137]\n[exit status 127]\nstill here\n"});
}

TEST_F(ConsoleTest, StaysOpenWhileACommandRuns) {
  openConsole({"true", gate.wait()});
  press({"ok", "exit", "red"});
  waitForJob(jobs);
  press({"ok", "exit", "red"});
  EXPECT_EQ(top(), "Console");
  gate.open();
  runToEnd(jobs);
}

TEST_F(ConsoleTest, ClosesByOkOrExitAloneOnceTheLastCommandHasEnded) {
  for (const char* key : {"ok", "exit"}) {
    openConsole({"true"});
    runToEnd(jobs);
    press({"red", "up", "5"});
    EXPECT_EQ(top(), "Console");
    press({key});
    EXPECT_EQ(top(), "");
  }
  EXPECT_EQ(notes.lines, (Lines{"command: true", "closed: None", "command: true", "closed: None"}));
}

TEST_F(ConsoleTest, WithoutCommandsIsDoneAtOnce) {
  openConsole({});
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent());
  press({"ok"});
  EXPECT_EQ(notes.lines, Lines{"closed: None"});
}

std::string repeated(const std::string& text, int count) {
  std::string result;
  while (count-- > 0) result += text;
  return result;
}

TEST_F(ConsoleTest, OfALongOutputTheEndIsShownFromTheBeginningOfALine) {
  const std::string line(48, 'a');
  openConsole({"yes " + line + " | head -n 10000"});
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(), (ConsoleContent{.output = repeated(line + "\n", 100000 / 49),
                                                     .dropped = 49 * (10000 - 100000 / 49)}));
}

TEST_F(ConsoleTest, OfALongLineTheEndIsShownFromTheBeginningOfACharacter) {
  openConsole({"yes € | head -n 100000 | tr -d '\\n'"});
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(), (ConsoleContent{.output = repeated("€", 100000 / 3),
                                                     .dropped = 3 * (100000 - 100000 / 3)}));
}

TEST_F(ConsoleTest, OddBytesOfTheOutputAreShownEscaped) {
  openConsole({"printf '\\377\\303\\251'"});
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{"\\xff\xc3\xa9"});
}

TEST_F(ConsoleTest, CharacterWhoseBytesComeOneByOneIsShownOnceItIsWhole) {
  openConsole({"printf '\\360\\237'; " + gate.wait() + "; printf '\\230\\200\\342'"});
  waitForJob(jobs);
  EXPECT_EQ(shown<ConsoleContent>().output, "");
  gate.open();
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>().output, "\xf0\x9f\x98\x80\\xe2");
}

TEST_F(ConsoleTest, OpenedWhileAnotherRunsBothComeToTheirEnd) {
  openConsole({"echo lower"});
  openConsole({"echo upper"});
  runToEnd(jobs);
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{"upper\n"});
  press({"ok"});
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{"lower\n"});
}

}  // namespace
}  // namespace desk
