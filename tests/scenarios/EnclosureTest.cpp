#include <arpa/inet.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/Descriptor.h"
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

void playEverything(Receiver& receiver) {
  const Play backup = receiver.play("backup", kBackupWords);
  EXPECT_EQ(backup.last(), closedFrame("exit"));
  const Play restore = receiver.play("restore", kRestoreWords);
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

/// Something of each kind that a program in a receiver shall not reach.
class Outside {
 public:
  explicit Outside(const fs::path& directory)
      : file_(directory / "canary"), server_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    writeFile(file_, "canary\n");
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (bind(server_.number(), any, size) != 0 || listen(server_.number(), 1) != 0 ||
        getsockname(server_.number(), any, &size) != 0) {
      throw std::runtime_error("there can be no server");
    }
    port_ = ntohs(address.sin_port);
    shared_ = shmget(getpid(), 1, IPC_CREAT | 0666);
  }
  ~Outside() { shmctl(shared_, IPC_RMID, nullptr); }
  Outside(const Outside&) = delete;
  Outside& operator=(const Outside&) = delete;

  std::string described() const {
    return file_.string() + " " + std::to_string(getpid()) + " " + std::to_string(port_) + " " +
           std::to_string(getpid()) + "\n";
  }

 private:
  fs::path file_;
  base::Descriptor server_;
  in_port_t port_ = 0;
  int shared_ = -1;
};

/// Whether root's processes can be limited: since Linux 6.14.
bool limitsRootsProcesses() {
  utsname system = {};
  uname(&system);
  return strverscmp(system.release, "6.14") >= 0;
}

TEST_P(EnclosureTest, AScriptReachesNothingOutside) {
  const Outside outside(receiver().outside());
  receiver().write(inBackups("outside"), outside.described());
  fs::copy_file(STOWLINE_ESCAPE, receiver().at(inBackups("restore_escape.sh")));
  const std::string highest_process = readFile("/proc/sys/kernel/pid_max");

  const Play play = receiver().play("restore", "select:script ok select:escape ok ok wait exit");

  EXPECT_EQ(readFile("/proc/sys/kernel/pid_max"), highest_process);

  ASSERT_EQ(play.status, 0) << play.errors;
  EXPECT_EQ(receiver().read(inBackups("report")),
            std::string("read a file: ENOENT\n"
                        "climb out: EPERM\n"
                        "climb out as another root: ENOSPC\n"
                        "mount: EPERM\n"
                        "mount the processes as another root: ENOSPC\n"
                        "make a device: EPERM\n"
                        "open by handle: EPERM\n"
                        "signal a process: ESRCH\n"
                        "connect to a server: ENETUNREACH\n"
                        "attach shared memory: ENOENT\n"
                        "name the machine: EPERM\n"
                        "make a huge file: EFBIG\n"
                        "lift the limit of memory: EPERM\n"
                        "start processes without end: ") +
                (GetParam() == Account::ordinary || limitsRootsProcesses() ? "EAGAIN" : "no end") +
                "\n"
                "gain privileges: no\n"
                "take the first process's descriptors: EPERM\n"
                "take the GUI's descriptors: EPERM\n"
                "inherited descriptors: none\n");
}

TEST_P(EnclosureTest, AScheduledBackupsToolsInheritNothingFromOutside) {
  const Outside outside(receiver().outside());
  receiver().write(inBackups("outside"), outside.described());
  fs::remove(receiver().at("/bin/tar"));
  fs::copy_file(STOWLINE_ESCAPE, receiver().at("/bin/tar"));
  std::vector<std::string> command = withoutLeakCheck({});
  command.insert(command.end(), {"sh", "-c", "exec \"$1\" auto --receiver \"$2\" 7</", "sh",
                                 kStowline, receiver().tree()});

  run(command);

  // The lock of the run, which its commands hold too, is a file of the tree.
  EXPECT_EQ(linesOf(receiver().read(inBackups("report"))).back(), "inherited descriptors: 3");
}

}  // namespace
}  // namespace command_test
