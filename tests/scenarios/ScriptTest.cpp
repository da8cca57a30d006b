#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using ScriptTest = DeskTest;

TEST_F(ScriptTest, RunsInAConsoleInsideTheReceiverWhichClosesTheListAfterwards) {
  const std::string script = inBackups("restore_look.sh");
  receiver().makeScript(script,
                        "echo \"$PATH $HOME $#\"\nls /media\n"
                        "kill -0 \"$(cat /var/run/enigma2.pid)\" && echo the GUI runs\n");
  fs::permissions(receiver().at(script), fs::perms(0644));
  const Play play = receiver().play("restore", "select:script ok select:look ok ok wait exit");

  ASSERT_EQ(play.lines.size(), 8U);
  EXPECT_EQ(play.lines[2], listFrame("ok", {"restore_look.sh", "restore_hello.sh"}, 0, "Start"));
  EXPECT_EQ(play.lines[4],
            questionFrame("ok", "QOR Stowline",
                          "Are you sure you want to run\nfollowing script:\nrestore_look.sh"));
  EXPECT_EQ(play.lines[5]["screen"], "Console");
  EXPECT_EQ(play.lines[6],
            consoleFrame(
                "wait", "/bin:/sbin:/usr/bin:/usr/sbin /home/root 0\nhdd\nnet\nusb\nthe GUI runs\n",
                false));
  EXPECT_EQ(play.last(), menuFrame("exit", "restore", 5));
  EXPECT_EQ(play.trace, std::vector<std::string>{kBackups + "/./restore_look.sh"});
  EXPECT_EQ(fs::status(receiver().at(script)).permissions(), fs::perms(0755));
  EXPECT_FALSE(receiver().exists("/var/run/enigma2.pid"));
}

TEST_F(ScriptTest, NothingThatRunsIsLeftWhenTheWordsHaveRunOut) {
  receiver().makeScript(inBackups("restore_hang.sh"), "sleep 300 &\necho started\nsleep 300\n");
  const Play play = receiver().play("restore", "select:script ok select:hang ok ok");
  EXPECT_EQ(play.last()["screen"], "Console");
  EXPECT_EQ(play.status, 0);
  receiver().waitForProcesses();
}

}  // namespace
}  // namespace command_test
