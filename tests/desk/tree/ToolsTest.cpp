#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "tests/desk/tree/TreeFixture.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

class Tools : public Tree {};

/// A process that waits for a signal.
class Sleeper {
 public:
  Sleeper() : pid_(fork()) {
    if (pid_ == 0) {
      while (true) pause();
    }
  }
  ~Sleeper() {
    if (pid_ > 0) kill(pid_, SIGKILL);
    if (pid_ > 0) waitpid(pid_, nullptr, 0);
  }

  pid_t pid() const { return pid_; }

  /// Returns the signal that has ended it.
  int endedBy() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
  }

  bool runs() { return waitpid(pid_, nullptr, WNOHANG) == 0; }

 private:
  pid_t pid_;
};

TEST_F(Tools, KillallEndsTheGui) {
  Sleeper gui;
  writeFile(tree_ / "var/run/enigma2.pid", std::to_string(gui.pid()) + "\n");
  const Outcome killed = run("killall -9 enigma2");
  EXPECT_EQ(killed.output, "");
  EXPECT_EQ(killed.status, 0);
  EXPECT_EQ(gui.endedBy(), SIGKILL);
}

TEST_F(Tools, KillallTakesAnySignalAndName) {
  Sleeper one;
  Sleeper other;
  writeFile(tree_ / "var/run/one.pid", std::to_string(one.pid()));
  writeFile(tree_ / "var/run/other.pid", std::to_string(other.pid()));
  EXPECT_EQ(run("killall -USR1 one").status, 0);
  EXPECT_EQ(one.endedBy(), SIGUSR1);
  EXPECT_EQ(run("killall other").status, 0);
  EXPECT_EQ(other.endedBy(), SIGTERM);
}

TEST_F(Tools, KillallSaysWhenThereIsNoGui) {
  const Outcome killed = run("killall -9 enigma2");
  EXPECT_EQ(killed.output, "enigma2: no process killed\n");
  EXPECT_EQ(killed.status, 1);
}

TEST_F(Tools, KillallNeverSignalsAGroup) {
  Sleeper child;  // in this process's group, which 0 would mean
  for (const char* pid : {"", "0", "00", "-1", "1", "1 2", "x"}) {
    writeFile(tree_ / "var/run/enigma2.pid", pid);
    const Outcome killed = run("killall -9 enigma2");
    EXPECT_EQ(killed.output, "enigma2: no process killed\n") << pid;
    EXPECT_EQ(killed.status, 1) << pid;
  }
  EXPECT_TRUE(child.runs());
}

TEST_F(Tools, InitScriptsKeepARecord) {
  EXPECT_EQ(run("/etc/init.d/networking stop ; /etc/init.d/networking start ; "
                "/etc/init.d/current_cam.sh start")
                .status,
            0);
  EXPECT_EQ(read(tree_ / "var/log/init.log"),
            "networking stop\nnetworking start\ncurrent_cam.sh start\n");

  flash(tree_);
  EXPECT_EQ(run("/etc/init.d/current_cam.sh stop ; /etc/init.d/networking stop").status, 0);
  EXPECT_EQ(read(tree_ / "var/log/init.log"), "current_cam.sh stop\nnetworking stop\n");
}

TEST_F(Tools, PersonalScriptSaysHelloAndWritesItDown) {
  EXPECT_NE(access((tree_ / "media/hdd/qor-stowline/restore_hello.sh").c_str(), X_OK), 0);
  const Outcome hello =
      run("chmod 755 /media/hdd/qor-stowline/restore_hello.sh; "
          "/media/hdd/qor-stowline/./restore_hello.sh");
  EXPECT_EQ(hello.output, "Hello from livingroom\n");
  EXPECT_EQ(hello.status, 0);
  EXPECT_TRUE(fs::exists(tree_ / "media/hdd/restore_hello.done"));
}

TEST_F(Tools, EveryProgramOfTheBackupAndRestoreCommandsIsThere) {
  for (const char* program :
       {"cat", "chmod", "cut", "echo", "grep",  "gunzip", "gzip", "killall", "ln",   "mkdir",
        "mv",  "opkg",  "rm",  "sh",   "sleep", "sync",   "tar",  "test",    "zcat", "["})
    EXPECT_EQ(run(std::string("which '") + program + "'").status, 0) << program;
  EXPECT_EQ(run("/bin/sync").status, 0);
}

TEST_F(Tools, ClockShowsTheMachinesTimeZone) {
  if (!fs::exists("/etc/localtime")) GTEST_SKIP() << "the machine has no time zone";
  const std::time_t now = std::time(nullptr);
  char offset[8];
  (void)std::strftime(offset, sizeof offset, "%z\n", std::localtime(&now));
  EXPECT_EQ(run("date +%z").output, offset);
}

TEST_F(Tools, TarPassesStatusAndOutputOn) {
  EXPECT_EQ(run("tar xzf /media/hdd/none.tar.gz -C /").status, 1);
  EXPECT_EQ(run("tar czf - /etc/hostname 2> /dev/null | tar tzf -").output, "etc/hostname\n");
}

}  // namespace
}  // namespace desk
