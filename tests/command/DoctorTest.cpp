#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "base/Descriptor.h"
#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Namespace.h"

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

TEST_F(DoctorTest, ReceiverThatIsWellHasNoBackupYetAndNothingStaysBehind) {
  const Snapshot before = receiver().content();
  const auto found = findings();
  Strings names;
  for (const auto& [name, finding] : found) {
    names.push_back(name);
    const bool has_none = name.starts_with("last good");
    EXPECT_TRUE(finding.starts_with(has_none ? "warning: there is none" : "ok: "))
        << name << " " << finding;
  }
  EXPECT_EQ(names, (Strings{"clock", "last good configuration", "last good plugins",
                            "last good settings", "medium", "model", "other runs",
                            "package manager", "remains", "room", "tar", "time stamp", "tools"}));
  EXPECT_EQ(found.at("model"), "ok: solo2");

  const Outcome table = examine({"--quiet"});
  EXPECT_EQ(table.status, 0);
  EXPECT_EQ(table.output,
            "CHECK                    STATE    FOUND\n"
            "last good settings       warning  there is none\n"
            "last good configuration  warning  there is none\n"
            "last good plugins        warning  there is none\n");
  EXPECT_EQ(changes(before, receiver().content()), (Strings{"+ var/run/stowline-auto.lock"}));
}

TEST_F(DoctorTest, WhateverRefusesAScheduledBackupIsAWarning) {
  const std::string lock = receiver().at("/var/run/stowline-auto.lock");
  writeFile(lock, "");
  const base::Descriptor file(open(lock.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(flock(file.number(), LOCK_EX | LOCK_NB), 0);
  const std::string future = "settings_29980301_07-04_solo2.auto.tar.gz";
  receiver().write(inBackups(future), "future");
  const auto found = findings();
  EXPECT_EQ(found.at("other runs"), "warning: another scheduled backup is running");
  const std::string stamp = found.at("time stamp");
  EXPECT_TRUE(stamp.starts_with("warning: the clock, 2")) << stamp;
  EXPECT_TRUE(stamp.ends_with(", is behind a scheduled backup: " + future)) << stamp;
}

TEST_F(DoctorTest, NewestSoundBackupOfEachKindIsNamedWithItsAge) {
  receiver().play("backup",
                  "select:installed ok ok select:channel ok ok select:configurations ok ok");
  const std::string whole = receiver().backup("settings", ".tar.gz");
  receiver().renameBackup(whole, "settings_20240305_07-04_solo2.tar.gz");
  receiver().write(inBackups("settings_20240306_07-04_solo2.tar.gz"), std::string(20000, 'x'));
  const auto found = findings();
  const std::string settings = found.at("last good settings");
  EXPECT_TRUE(settings.starts_with("warning: settings_20240305_07-04_solo2.tar.gz, ")) << settings;
  EXPECT_TRUE(settings.ends_with(
      " days old; newer and not good: settings_20240306_07-04_solo2.tar.gz "
      "(the file is not compressed by gzip (byte 0 of the file, byte 0 unpacked))"))
      << settings;
  EXPECT_EQ(found.at("last good plugins"),
            "ok: " + receiver().backup("pluginlist", ".lst") + ", less than a day old");
  const std::string configuration = receiver().backup("configuration", ".tar.gz");
  EXPECT_EQ(found.at("last good configuration"), "ok: " + configuration + ", less than a day old");

  const std::string not_good = "warning: there is none; newer and not good: " + configuration;
  const std::string user_files = configuration + "_user_files";
  fs::copy_file(receiver().at(inBackups(user_files)),
                receiver().at(inBackups(configuration + "_atile_hd")));
  EXPECT_EQ(findings().at("last good configuration"),
            not_good + " (two archives of user files: links of one could be in the other's way)");
  fs::remove(receiver().at(inBackups(configuration + "_atile_hd")));
  receiver().write(inBackups(user_files), "damaged");
  EXPECT_EQ(findings().at("last good configuration"),
            not_good +
                " (_user_files: the file is not compressed by gzip (byte 0 of the file, byte 0 "
                "unpacked))");
  fs::remove(receiver().at(inBackups(user_files)));
  fs::create_symlink(user_files, receiver().at(inBackups(user_files)));
  EXPECT_EQ(findings().at("last good configuration"),
            not_good + " (_user_files: Too many levels of symbolic links)");

  fs::remove(receiver().at(inBackups(user_files)));
  constexpr std::size_t kLongestName = 255;
  std::string longest = "configuration_ver_c_20240305_07-04_solo2.tar.gz";
  longest.insert(longest.find("_2024"), kLongestName - longest.size(), 'x');
  receiver().renameBackup(configuration, longest);
  const std::string long_one = findings().at("last good configuration");
  EXPECT_TRUE(long_one.starts_with("ok: " + longest)) << long_one;
}

TEST_F(DoctorTest, ArchiveThatIsTooSmallIsNotGoodAndManyBadOnesEndTheSearch) {
  const std::string small = "settings_20240306_07-04_solo2.tar.gz";
  receiver().write(inBackups(small), "cut off");
  for (int number = 1000; number < 1101; ++number) {
    receiver().write(
        inBackups("pluginlist_20240305_07-04_solo2_" + std::to_string(number) + "_solo2.lst"), "!");
  }
  const auto found = findings();
  EXPECT_EQ(found.at("last good settings"),
            "warning: there is none; newer and not good: " + small + " (too small to be restored)");
  const std::string plugins = found.at("last good plugins");
  EXPECT_TRUE(plugins.starts_with("warning: none of the newest 100 is good: ")) << plugins;
}

TEST_F(DoctorTest, EmptyListIsGoodOnlyWhereNoPluginIsInstalled) {
  const std::string list = "pluginlist_20240305_07-04_solo2.lst";
  receiver().write(inBackups(list), "");
  const std::string not_good = "warning: there is none; newer and not good: " + list + " (empty)";
  EXPECT_EQ(findings().at("last good plugins"), not_good);
  receiver().replaceTool("/usr/bin/opkg", "exit 255");
  EXPECT_EQ(findings().at("last good plugins"), not_good) << "it cannot be told";
  receiver().replaceTool("/usr/bin/opkg", "echo 'base-files - 3.0'");
  EXPECT_TRUE(findings().at("last good plugins").starts_with("ok: " + list));
}

TEST_F(DoctorTest, OddEntriesDoNotEndTheExaminationAndOneFromTheFutureMeansAWrongClock) {
  receiver().write(inBackups("settings_20240301_07-04_solo2.tar.gz/in it"), "");
  fs::create_symlink("nowhere", receiver().at(kBackups) / "settings_20240302_07-04_solo2.tar.gz");
  const std::string loop = "settings_20240303_07-04_solo2.tar.gz";
  fs::create_symlink(loop, receiver().at(kBackups) / loop);
  receiver().write(inBackups("pluginlist_29991231_23-59_solo2.lst"), "enigma2-plugin-one\n");
  const auto found = findings();
  EXPECT_EQ(found.at("last good settings"), "warning: there is none; newer and not good: " + loop +
                                                " (Too many levels of symbolic links)");
  EXPECT_EQ(found.at("last good plugins"),
            "ok: pluginlist_29991231_23-59_solo2.lst, from the future");
  const std::string clock = found.at("clock");
  EXPECT_TRUE(clock.starts_with("warning: 2")) << clock;
  EXPECT_TRUE(clock.ends_with(" is before the newest backup, 2999-12-31 23:59")) << clock;
}

TEST_F(DoctorTest, ModelAndToolsThatDoNotServeAreNamed) {
  receiver().write("/proc/stb/info/model", "box;reboot\n");
  // As GNU tar does it.
  receiver().replaceTool(
      "/bin/tar",
      "args=; while [ $# -gt 0 ]; do case $1 in --exclude) shift ;; *) args=\"$args $1\" ;; "
      "esac; shift; done; exec /bin/tar.real $args");
  const auto odd = findings();
  EXPECT_EQ(odd.at("model"), "failed: 'box;reboot' cannot be the model of a receiver");
  EXPECT_EQ(odd.at("tar"),
            "warning: exclusions after the file list are not honoured: configuration backups will "
            "hold channel data and keys");

  receiver().replaceTool("/bin/tar", "exit 1");
  receiver().replaceTool("/usr/bin/opkg", "echo 'cannot lock' >&2; exit 255");
  fs::remove(receiver().at("/bin/grep"));
  fs::remove(receiver().at("/etc/init.d/networking"));
  const auto broken = findings();
  EXPECT_EQ(broken.at("tools"), "failed: missing: grep /etc/init.d/networking");
  EXPECT_EQ(broken.at("package manager"), "failed: opkg does not answer: cannot lock");
}

TEST_F(DoctorTest, TarThatDoesNotBringBackWhatWasThereIsSaidWithTheDifference) {
  const struct {
    const char* tar;  ///< how its script goes on when it unpacks, in the directory
    const char* finding;
  } kCases[] = {
      {"echo broken >&2; exit 1", "nothing comes back (broken)"},
      {"$real; chmod 700 below/script",
       "below/script was file of mode 755, link count 1, 'below/script' and comes back as file of "
       "mode 700, link count 1, 'below/script'"},
      {"$real; rm link; cp below/script link",
       "link was link to below/script and comes back as file of mode 755, link count 1, "
       "'below/script'"},
      {"$real; cp private copy; mv copy second_name",
       "private was file of mode 600, link count 2, 'private' and comes back as file of mode 600, "
       "link count 1, 'private'"},
      {"$real; > more", "more was nothing and comes back as file of mode 644, link count 1, ''"},
  };
  for (const auto& [tar, finding] : kCases) {
    receiver().replaceTool(
        "/bin/tar", std::string("[ $1 = -xzf ] || exec /bin/tar.real \"$@\"\n"
                                "real=\"/bin/tar.real $1 $2 -C $4\"\n"
                                "mkdir -p $4/${4%/unpacked}/files; cd $4/${4%/unpacked}/files\n") +
                        tar);
    EXPECT_EQ(findings().at("tar"), std::string("failed: ") + finding);
  }
  receiver().replaceTool("/bin/gzip", "exit 1");
  EXPECT_TRUE(findings().at("tar").starts_with("failed: below was directory"));
}

TEST_F(DoctorTest, MediumThatIsNotMountedTooSmallOrReadOnlyIsSaid) {
  const std::string mounts = receiver().read("/proc/mounts");
  receiver().write("/proc/mounts", "rootfs / rootfs rw 0 0\n");
  const auto not_mounted = findings();
  EXPECT_EQ(not_mounted.at("medium"), "failed: the medium /media/hdd is not mounted");
  EXPECT_EQ(not_mounted.size(), 6U) << "nothing else can be said of it";

  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNoMounts(usb)) GTEST_SKIP() << *reason;
  receiver().write("/proc/mounts", mounts);
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  const auto small = findings(inMountNamespace(mountSmall(usb, "size=100k")));
  EXPECT_TRUE(small.at("room").starts_with("warning: ")) << small.at("room");
  const std::string few =
      findings(inMountNamespace(mountSmall(usb, "size=64m,nr_inodes=5"))).at("room");
  EXPECT_TRUE(few.starts_with("warning: 64.0 MiB and 3 files free, ")) << few;
  EXPECT_TRUE(few.ends_with(" and 4 files")) << few;
  fs::create_directories(usb / "qor-stowline");
  const auto read_only = findings(inMountNamespace(mountReadOnly(usb)));
  EXPECT_EQ(read_only.at("medium"),
            "failed: cannot write to /media/usb/qor-stowline: Read-only file system");
}

TEST(DoctorRefusals, WithoutAReceiverJsonHasTheReasonAsAFailedCheck) {
  if (fs::exists("/proc/stb/info/model")) GTEST_SKIP() << "this machine is a receiver";
  const Outcome outcome = run({kStowline, "doctor", "--json"});
  EXPECT_EQ(outcome.status, 1);
  const Json checks = Json::parse(outcome.output)["checks"];
  ASSERT_EQ(checks.size(), 1U);
  EXPECT_EQ(checks[0]["name"], "receiver");
  EXPECT_EQ(checks[0]["state"], "failed");
  EXPECT_EQ("stowline: " + checks[0]["detail"].get<std::string>() + "\n", outcome.errors);
}

}  // namespace
}  // namespace command_test
