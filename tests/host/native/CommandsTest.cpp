#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "host/native/NativeSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace native {
namespace {

using Lines = std::vector<std::string>;

/// A shell command and the wait status that it ends with.
struct Ending {
  const char* command;
  int wait_status;
};

constexpr Ending kEndings[] = {
    {"true", 0},
    {"exit 1", 1 << 8},
    {"exit 255", 255 << 8},
    {"kill -9 $$", SIGKILL},
    {"kill -15 $$", SIGTERM},
    {"false; true", 0},
    {"/no/such/program 2>/dev/null", 127 << 8},
    {"", 0},
};

TEST(Commands, SystemReturnsTheWaitStatusAndRaisesNothing) {
  NativeSystem os;
  for (const Ending& ending : kEndings) {
    EXPECT_EQ(os.system(ending.command), ending.wait_status) << ending.command;
  }
}

TEST(Commands, SystemRunsToTheEndInAShell) {
  const support::TemporaryDirectory directory;
  NativeSystem os;
  os.system("cd " + directory.path() + " && for n in 1 2 3; do echo $n; done > numbers");
  EXPECT_EQ(directory.read("numbers"), "1\n2\n3\n");
}

/// A shell command and the lines that it prints.
struct Printing {
  const char* command;
  Lines lines;
};

const Printing kPrintings[] = {
    {"true", {}},
    {"printf 'one\\ntwo\\n'", {"one\n", "two\n"}},
    {"printf 'one\\ntwo'", {"one\n", "two"}},
    {"printf '\\n\\n'", {"\n", "\n"}},
    {"printf 'a\\r\\nb \\n'", {"a\r\n", "b \n"}},
    {"printf '\\377\\n'", {"\xff\n"}},
    {"echo seen; exit 3", {"seen\n"}},
    {"echo seen; kill -9 $$", {"seen\n"}},
    {"echo unseen 1>/dev/null", {}},
    {"/no/such/program 2>/dev/null", {}},
};

TEST(Commands, PopenReturnsTheLinesAndRaisesNothingForAFailingCommand) {
  NativeSystem os;
  for (const Printing& printing : kPrintings) {
    EXPECT_EQ(os.popen(printing.command), printing.lines) << printing.command;
  }
}

TEST(Commands, PopenReadsOutputLargerThanAnyBuffer) {
  const Lines lines = NativeSystem().popen("seq 1 200000");
  ASSERT_EQ(lines.size(), 200000U);
  for (std::size_t number = 1; number <= lines.size(); ++number) {
    ASSERT_EQ(lines[number - 1], std::to_string(number) + "\n");
  }
}

TEST(Commands, CommandsSeeTheArgumentsAsTheyStand) {
  EXPECT_EQ(NativeSystem().popen("printf '%s\\n' 'a  b' \"$((1+1))\" \\*"),
            (Lines{"a  b\n", "2\n", "*\n"}));
}

}  // namespace
}  // namespace native
