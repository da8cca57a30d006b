#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using EnclosureTest = EveryAccountTest;
INSTANTIATE_TEST_SUITE_P(, EnclosureTest, kAccounts, nameOfAccount);

/// Every flow of the two menus; a restored configuration kills the GUI on the way.
constexpr const char* kBackupWords =
    "ok select:usb ok ok select:hdd ok select:installed ok ok select:channel ok ok "
    "select:configurations ok ok exit";
constexpr const char* kRestoreWords =
    "select:plugins ok ok wait ok select:channel ok ok ok select:local ok wait ok "
    "select:configurations ok ok ok select:script ok ok ok wait ok select:script ok yellow ok red "
    "exit";

void playEverything(Receiver& receiver, const std::vector<std::string>& wrapper = {}) {
  const Play backup = receiver.play("backup", kBackupWords, wrapper);
  EXPECT_EQ(backup.last(), closedFrame("exit"));
  const Play restore = receiver.play("restore", kRestoreWords, wrapper);
  EXPECT_EQ(restore.last(), closedFrame("exit"));
  EXPECT_EQ(restore.events(),
            (std::vector<Json>{{{"event", "gui-killed"}}, {{"event", "gui-started"}}}));
}

TEST_P(EnclosureTest, EveryFlowLeavesWhatIsBesideTheTreeAlone) {
  const fs::path outside = receiver().outside();
  writeFile(outside / "canary/etc/enigma2/lamedb", "canary\n");
  writeFile(outside / "canary/media/hdd/qor-stowline/settings_1.tar.gz", "canary\n");
  fs::create_symlink(outside / "canary/etc/enigma2/lamedb", receiver().at("/etc/enigma2/link.tv"));
  fs::create_symlink("../../../canary/etc/enigma2/lamedb", receiver().at("/etc/enigma2/up.tv"));
  Snapshot before = snapshot(outside);

  playEverything(receiver());

  Snapshot after = snapshot(outside);
  forget(before, "receiver");
  forget(after, "receiver");
  EXPECT_EQ(changes(before, after), (std::vector<std::string>{"+ log", "+ trace"}));
}

/// The system calls of one process, as strace writes them.
using Calls = std::vector<std::string>;

bool isCall(const std::string& line, const std::string& name) {
  return line.starts_with(name + "(");
}

/// Returns where the calls begin that the process makes inside `tree`: behind its chroot, or at
/// their start, for a process that has been started inside.
Calls::const_iterator beginOfInside(const Calls& calls, const fs::path& tree) {
  const std::string chroot = "chroot(\"" + tree.string() + "\")";
  for (auto call = calls.begin(); call != calls.end(); ++call) {
    if (call->starts_with(chroot) && call->ends_with("= 0")) return call + 1;
  }
  return calls.begin();
}

/// Returns the paths of the descriptors that the call names or returns which lie outside `tree`.
std::vector<std::string> pathsOutside(const std::string& call, const fs::path& tree) {
  std::vector<std::string> outside;
  for (std::size_t at = call.find("</"); at != std::string::npos; at = call.find("</", at + 1)) {
    const bool is_descriptor =
        at > 0 && (std::isdigit(call[at - 1]) != 0 || call.substr(0, at).ends_with("AT_FDCWD"));
    if (!is_descriptor) continue;
    const std::string path = call.substr(at + 1, call.find('>', at) - at - 1);
    if (path != tree && !path.starts_with(tree.string() + "/")) outside.push_back(path);
  }
  return outside;
}

/// Expects no program to be started before the process is inside, and no file used outside from
/// then on. Returns how many calls were looked at.
std::size_t expectInside(const Calls& calls, const fs::path& tree) {
  const auto inside = beginOfInside(calls, tree);
  for (auto call = calls.begin(); call != inside; ++call) {
    EXPECT_FALSE(isCall(*call, "execve")) << *call;
  }
  for (auto call = inside; call != calls.end(); ++call) {
    EXPECT_EQ(pathsOutside(*call, tree), std::vector<std::string>()) << *call;
  }
  return static_cast<std::size_t>(calls.end() - inside);
}

TEST_P(EnclosureTest, ProcessesUseNoFileOutsideTheTree) {
  const fs::path calls = receiver().outside() / "calls";
  // The leak check of a sanitized build cannot run in a traced process.
  const std::vector<std::string> strace = {
      "strace", "-E", "ASAN_OPTIONS=detect_leaks=0", "-ff", "-y",        "-s",
      "4096",   "-e", "trace=%file,%process",        "-o",  calls / "of"};
  fs::create_directory(calls);
  std::vector<std::string> probe = strace;
  probe.push_back("true");
  if (const Outcome outcome = run(probe); outcome.status != 0) {
    GTEST_SKIP() << "strace cannot run here: " << outcome.errors;
  }
  fs::remove_all(calls);
  fs::create_directory(calls);

  playEverything(receiver(), strace);

  std::size_t guis = 0;
  std::size_t looked_at = 0;
  for (const std::string& file : namesIn(calls)) {
    const Calls process = linesOf(readFile(calls / file));
    ASSERT_FALSE(process.empty()) << file;
    if (process[0].find(kStowline) != std::string::npos) continue;  // a supervisor
    if (beginOfInside(process, receiver().tree()) != process.begin()) ++guis;
    looked_at += expectInside(process, receiver().tree());
  }
  // One for the backup menu, and two for the restore menu, whose first one is killed.
  EXPECT_EQ(guis, 3U);
  EXPECT_GT(looked_at, 1000U);
}

}  // namespace
}  // namespace command_test
