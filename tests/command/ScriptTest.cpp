#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using ScriptTest = DeskTest;

constexpr const char* kQuestion = "Are you sure you want to run\nfollowing script:\n";

std::string running(const std::string& script) {
  return "select:script ok select:" + script + " ok ok wait";
}

TEST_F(ScriptTest, RunsInAConsoleWhichClosesTheListAfterwards) {
  fs::permissions(receiver().at(kBackups + "/restore_hello.sh"), fs::perms(0644));
  const Play play = receiver().play("restore", running("hello") + " exit");

  ASSERT_EQ(play.lines.size(), 8U);
  EXPECT_EQ(play.lines[2], listFrame("ok", {"restore_hello.sh"}, 0, "Start"));
  EXPECT_EQ(play.lines[4],
            questionFrame("ok", "QOR Stowline", std::string(kQuestion) + "restore_hello.sh"));
  EXPECT_EQ(play.lines[5]["screen"], "Console");
  EXPECT_EQ(play.lines[6], consoleFrame("wait", "Hello from livingroom\n", false));
  EXPECT_EQ(play.last(), menuFrame("exit", "restore", 5));
  EXPECT_EQ(play.trace, std::vector<std::string>{kBackups + "/./restore_hello.sh"});
  EXPECT_TRUE(receiver().exists("/media/hdd/restore_hello.done"));
  EXPECT_EQ(fs::status(receiver().at(kBackups + "/restore_hello.sh")).permissions(),
            fs::perms(0755));
}

TEST_F(ScriptTest, FailingScriptShowsItsErrorsAndItsExitStatus) {
  receiver().makeScript(kBackups + "/restore_fail.sh", "echo before\necho no luck >&2\nexit 3\n");
  EXPECT_EQ(receiver().play("restore", running("fail")).last(),
            consoleFrame("wait", "before\nno luck\n[exit status 3]\n", false));
}

/// A quick script ends the GUI during the word that starts it, a slow one during the wait.
TEST_F(ScriptTest, ScriptThatKillsTheGuiRestartsIt) {
  receiver().makeScript(kBackups + "/restore_kill.sh", "killall -9 enigma2\n");
  const Play play = receiver().play("restore", running("kill") + " down exit");

  const Json killed = {{"event", "gui-killed"}};
  const std::vector<Json> tail(std::ranges::find(play.lines, killed), play.lines.end());
  std::vector<Json> expected = {killed, {{"event", "gui-started"}}};
  if (tail.size() == 6) expected.push_back(menuFrame("ok", "restore", 0));
  expected.push_back(menuFrame("wait", "restore", 0));
  expected.push_back(menuFrame("down", "restore", 1));
  expected.push_back(closedFrame("exit"));
  EXPECT_EQ(tail, expected);
  EXPECT_EQ(play.status, 0);
  EXPECT_EQ(play.errors, "");
}

/// Returns how many processes live in `tree`; one that ends at this moment may be counted.
std::ptrdiff_t processesIn(const fs::path& tree) {
  return std::ranges::count_if(fs::directory_iterator("/proc"), [&](const auto& entry) {
    std::error_code unreadable;
    return fs::read_symlink(entry.path() / "root", unreadable) == tree;
  });
}

TEST_F(ScriptTest, NothingThatRunsIsLeftWhenTheWordsHaveRunOut) {
  receiver().makeScript(kBackups + "/restore_hang.sh", "sleep 300 &\necho started\nsleep 300\n");
  const Play play = receiver().play("restore", "select:script ok select:hang ok ok");
  EXPECT_EQ(play.last()["screen"], "Console");
  EXPECT_EQ(play.status, 0);
  while (processesIn(receiver().tree()) > 0) std::this_thread::yield();
}

TEST_F(ScriptTest, GuiThatEndsOtherwiseIsSaidInOneLine) {
  receiver().makeScript(kBackups + "/restore_end.sh", "killall enigma2\n");
  const Play play = receiver().play("restore", running("end") + " down");

  EXPECT_EQ(play.status, 1);
  EXPECT_EQ(play.errors, "stowline: the GUI has crashed: Terminated\n");
}

TEST_F(ScriptTest, ScriptSeesTheReceiverAlone) {
  receiver().makeScript(kBackups + "/restore_look.sh", "echo \"$PATH $HOME $#\"\nls /media\n");
  EXPECT_EQ(
      receiver().play("restore", running("look")).last(),
      consoleFrame("wait", "/bin:/sbin:/usr/bin:/usr/sbin /home/root 0\nhdd\nnet\nusb\n", false));
}

}  // namespace
}  // namespace command_test
