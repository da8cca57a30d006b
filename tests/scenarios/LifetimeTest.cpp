#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kHang = "select:script ok select:hang ok ok wait";
const std::string kMark = "/media/hdd/running";

using LifetimeTest = EveryAccountTest;
INSTANTIATE_TEST_SUITE_P(, LifetimeTest, kAccounts, nameOfAccount);

/// Returns what starts a command, ends it by the signal once the mark is there, and succeeds.
std::vector<std::string> endedBy(const std::string& signal, const fs::path& mark) {
  return {"sh",
          "-mc",
          "signal=$1 mark=$2; shift 2; env --default-signal \"$@\" & while ! [ -e \"$mark\" ]; do "
          "sleep 0.01; done; "
          "kill -s \"$signal\" $!; wait $!; exit 0",
          "sh",
          signal,
          mark};
}

TEST_P(LifetimeTest, NothingOutlivesTheCommandHoweverThatEnds) {
  receiver().makeScript(inBackups("restore_hang.sh"),
                        "busybox setsid sleep 300 &\necho >" + kMark + "\nsleep 300\n");
  for (const char* signal : {"INT", "TERM", "HUP", "QUIT", "KILL"}) {
    std::vector<std::string> command = endedBy(signal, receiver().at(kMark));
    for (const std::string& word : receiver().playArguments("restore", kHang)) {
      command.push_back(word);
    }

    run(command);

    receiver().waitForProcesses();
    EXPECT_EQ(run({kStowline, "receiver", "flash", receiver().tree()}).status, 0);
    fs::remove(receiver().at(kMark));
  }
}

TEST_P(LifetimeTest, NothingOutlivesTheGui) {
  receiver().makeScript(
      inBackups("restore_hang.sh"),
      "killall -9 enigma2\nbusybox setsid sleep 300 &\necho >" + kMark + "\nsleep 300\n");
  const Play play = receiver().play("restore", kHang);
  EXPECT_EQ(play.events(),
            (std::vector<Json>{{{"event", "gui-killed"}}, {{"event", "gui-started"}}}));
  EXPECT_EQ(play.status, 0) << play.errors;
  EXPECT_EQ(receiver().processes(), std::vector<pid_t>());
}

/// Runs a backup whose tar waits, and meanwhile whatever else wants the tree.
constexpr const char* kWhileABackupRuns = R"(
tree=$1 mark=$2 stowline=$3
"$stowline" auto --receiver "$tree" >/dev/null &
while ! [ -e "$mark" ]; do sleep 0.01; done
for words in 'desk --play exit' auto doctor; do "$stowline" $words --receiver "$tree"; done
"$stowline" receiver flash "$tree"
echo >"$mark.go"
wait $!
)";

TEST_P(LifetimeTest, WhoeverWorksInATreeHasItAlone) {
  receiver().replaceTool("/bin/tar", "if ! [ -e " + kMark + " ]; then\n  echo >" + kMark +
                                         "\n  while ! [ -e " + kMark +
                                         ".go ]; do sleep 0.01; done\nfi\n"
                                         "exec /bin/tar.real \"$@\"\n");
  const std::string in_use = "'" + receiver().tree().string() + "' is in use by process ";
  std::vector<std::string> command = withoutLeakCheck({});
  command.insert(command.end(), {"sh", "-c", kWhileABackupRuns, "sh", receiver().tree(),
                                 receiver().at(kMark), kStowline});
  const Outcome outcome = run(command);
  EXPECT_EQ(outcome.status, 0);
  const std::vector<std::string> errors = linesOf(outcome.errors);
  ASSERT_EQ(errors.size(), 4U) << outcome.errors;
  for (const std::string& error : errors) {
    EXPECT_TRUE(error.starts_with("stowline: " + in_use)) << error;
    EXPECT_TRUE(error.ends_with(" auto): close that first")) << error;
  }
}

}  // namespace
}  // namespace command_test
