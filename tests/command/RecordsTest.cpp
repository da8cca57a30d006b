#include <string>
#include <vector>

#include "tests/command/DeskTest.h"
#include "tests/command/Expected.h"

namespace command_test {
namespace {

using RecordsTest = DeskTest;

TEST_F(RecordsTest, LogAndTraceAreAppendedTo) {
  receiver().write(kBackups + "/pluginlist_x.lst", "enigma2-plugin-skin-atile\n");
  const std::vector<std::string> commands = {"opkg update", kInstalledPlugins,
                                             "cat " + kBackups + "/pluginlist_x.lst"};
  const std::string line = "[QOR-Stowline] Plugin enigma2-plugin-skin-atile is already installed";
  const std::string words = "select:plugins ok ok wait";

  const Play first = receiver().play("restore", words);
  EXPECT_EQ(first.trace, commands);
  EXPECT_EQ(first.log, std::vector<std::string>{line});

  // Once more, without play(), which begins them anew.
  ASSERT_EQ(run(receiver().playArguments("restore", words)).status, 0);
  std::vector<std::string> twice = commands;
  twice.insert(twice.end(), commands.begin(), commands.end());
  EXPECT_EQ(linesOf(readFile(receiver().outside() / "trace")), twice);
  EXPECT_EQ(linesOf(readFile(receiver().outside() / "log")),
            (std::vector<std::string>{line, line}));
}

TEST_F(RecordsTest, GuiPutsItsNumberIntoTheTreeWhileItRuns) {
  receiver().makeScript(kBackups + "/restore_pid.sh",
                        "pid=$(cat /var/run/enigma2.pid)\nkill -0 \"$pid\" && echo runs\n");
  const Play play = receiver().play("restore", "select:script ok select:pid ok ok wait");

  EXPECT_EQ(play.last(), consoleFrame("wait", "runs\n", false));
  EXPECT_FALSE(receiver().exists("/var/run/enigma2.pid"));
}

}  // namespace
}  // namespace command_test
