#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/command/DeskTest.h"
#include "tests/command/Namespace.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/// A receiver, as the doctor finds it.
class DoctorTest : public DeskTest {
 protected:
  Outcome examine(const Strings& options = {}, const Strings& wrapper = {}) {
    return receiver().runHere("doctor", options, wrapper);
  }

  /// Returns "state: detail" by the check's name.
  std::map<std::string, std::string> findings(const Strings& wrapper = {}) {
    const Outcome outcome = examine({"--json"}, wrapper);
    std::map<std::string, std::string> found;
    bool has_failed = false;
    const Json json = Json::parse(outcome.output);
    for (const Json& check : json["checks"]) {
      const std::string state = check["state"];
      found[check["name"]] = state + ": " + check["detail"].get<std::string>();
      has_failed = has_failed || state == "failed";
    }
    EXPECT_EQ(outcome.status, has_failed ? 1 : 0) << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), !has_failed);
    return found;
  }
};

TEST_F(DoctorTest, ReceiverThatIsWellHasNoBackupYet) {
  const auto found = findings();
  Strings names;
  for (const auto& [name, finding] : found) {
    names.push_back(name);
    const bool has_none = name.starts_with("last good");
    EXPECT_TRUE(finding.starts_with(has_none ? "warning: there is none" : "ok: "))
        << name << " " << finding;
  }
  EXPECT_EQ(names,
            (Strings{"clock", "last good configuration", "last good plugins", "last good settings",
                     "medium", "model", "package manager", "room", "tar's exclusions", "tools"}));
  EXPECT_EQ(found.at("model"), "ok: solo2");
}

TEST_F(DoctorTest, NewestSoundBackupOfEachKindIsNamedWithItsAge) {
  receiver().play("backup",
                  "select:installed ok ok select:channel ok ok select:configurations ok ok");
  const std::string whole = receiver().backup("settings", ".tar.gz");
  receiver().renameBackup(whole, "settings_20240305_07-04_solo2.tar.gz");
  receiver().write(kBackups + "/settings_20240306_07-04_solo2.tar.gz", std::string(20000, 'x'));
  const auto found = findings();
  const std::string settings = found.at("last good settings");
  EXPECT_TRUE(settings.starts_with("warning: settings_20240305_07-04_solo2.tar.gz, ")) << settings;
  EXPECT_TRUE(
      settings.ends_with(" days old; not sound is the newer settings_20240306_07-04_solo2.tar.gz"))
      << settings;
  EXPECT_EQ(found.at("last good plugins"),
            "ok: " + receiver().backup("pluginlist", ".lst") + ", less than a day old");
  EXPECT_EQ(found.at("last good configuration"),
            "ok: " + receiver().backup("configuration", ".tar.gz") + ", less than a day old");
}

TEST_F(DoctorTest, OddEntriesOnTheMediumDoNotEndTheExamination) {
  receiver().write(kBackups + "/settings_20240301_07-04_solo2.tar.gz/in it", "");
  fs::create_symlink("nowhere", receiver().at(kBackups) / "settings_20240302_07-04_solo2.tar.gz");
  EXPECT_EQ(findings().at("last good settings"), "warning: there is none");
}

TEST_F(DoctorTest, BackupWithADamagedCompanionIsNotSound) {
  receiver().play("backup", "select:configurations ok ok");
  const std::string companion = receiver().backup("configuration", "_user_files");
  receiver().write(kBackups + "/" + companion, "damaged");
  const std::string found = findings().at("last good configuration");
  EXPECT_EQ(found, "warning: there is none; not sound is the newer " +
                       receiver().backup("configuration", ".tar.gz"));
}

TEST_F(DoctorTest, ModelThatCannotBePartOfANameIsAFailure) {
  for (const char* model : {"", "a b", "../x", "box;reboot"}) {
    receiver().write("/proc/stb/info/model", std::string(model) + "\n");
    EXPECT_EQ(findings().at("model"),
              std::string("failed: '") + model + "' cannot be the model of a receiver");
  }
}

TEST_F(DoctorTest, TarThatDoesNotHonourExclusionsAfterTheFilesIsWarnedOf) {
  // As GNU tar does it.
  receiver().replaceTool(
      "/bin/tar",
      "args=; while [ $# -gt 0 ]; do case $1 in --exclude) shift ;; *) args=\"$args $1\" ;; "
      "esac; shift; done; exec /bin/tar.real $args");
  EXPECT_EQ(findings().at("tar's exclusions"),
            "warning: not honoured after the file list: configuration backups will hold channel "
            "data and keys");
}

TEST_F(DoctorTest, BrokenToolsAreNamed) {
  receiver().replaceTool("/bin/tar", "exit 1");
  receiver().replaceTool("/usr/bin/opkg", "echo 'cannot lock' >&2; exit 255");
  fs::remove(receiver().at("/bin/grep"));
  fs::remove(receiver().at("/etc/init.d/networking"));
  const auto found = findings();
  EXPECT_EQ(found.at("tools"), "failed: missing: grep /etc/init.d/networking");
  EXPECT_EQ(found.at("package manager"), "failed: opkg does not answer: cannot lock");
  EXPECT_TRUE(found.at("tar's exclusions").starts_with("failed: "));
}

TEST_F(DoctorTest, BackupFromTheFutureMeansAClockThatIsWrong) {
  const std::string name = "pluginlist_29991231_23-59_solo2.lst";
  receiver().write(kBackups + "/" + name, "enigma2-plugin-one\n");
  const std::string clock = findings().at("clock");
  EXPECT_TRUE(clock.starts_with("warning: 2")) << clock;
  EXPECT_TRUE(clock.ends_with(" is before the newest backup, 2999-12-31 23:59")) << clock;
}

TEST_F(DoctorTest, MediumThatIsNotMountedIsAFailureAndNothingElseIsSaidOfIt) {
  receiver().write("/proc/mounts", "rootfs / rootfs rw 0 0\n");
  const auto found = findings();
  EXPECT_EQ(found.at("medium"), "failed: the medium /media/hdd is not mounted");
  EXPECT_EQ(found.size(), 5U);
}

TEST_F(DoctorTest, MediumThatIsTooSmallOrReadOnlyIsSaid) {
  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNoMounts(usb)) GTEST_SKIP() << *reason;
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  const auto small = findings(inMountNamespace(mountSmall(usb, "size=100k")));
  EXPECT_TRUE(small.at("room").starts_with("warning: ")) << small.at("room");
  fs::create_directories(usb / "qor-stowline");
  const auto read_only = findings(inMountNamespace(mountReadOnly(usb)));
  EXPECT_EQ(read_only.at("medium"),
            "failed: /media/usb/qor-stowline cannot be written: Read-only file system");
}

TEST_F(DoctorTest, NothingStaysBehind) {
  const Snapshot before = receiver().content();
  examine();
  EXPECT_EQ(receiver().content(), before);
}

TEST_F(DoctorTest, TableNamesWhatIsNotWellAndQuietNothingElse) {
  const Outcome outcome = examine({"--quiet"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output,
            "CHECK                    STATE    FOUND\n"
            "last good settings       warning  there is none\n"
            "last good configuration  warning  there is none\n"
            "last good plugins        warning  there is none\n");
}

}  // namespace
}  // namespace command_test
