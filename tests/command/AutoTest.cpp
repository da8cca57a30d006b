#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/Descriptor.h"
#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Namespace.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/// The scheduled backup: what it writes, what it trusts, and what it deletes.
class AutoTest : public DeskTest {
 protected:
  Outcome backup(const Strings& options = {}, const Strings& wrapper = {}) {
    return receiver().runHere("auto", options, wrapper);
  }

  /// Puts four old scheduled backups of each kind onto the medium, and returns the files' names.
  Strings putOldBackups() {
    Strings names;
    for (const char* day : {"01", "02", "03", "04"}) {
      const std::string stamp = std::string("_202403") + day + "_07-04_solo2.auto";
      names.push_back("settings" + stamp + ".tar.gz");
      names.push_back("configuration_ver_c" + stamp + ".tar.gz");
      names.push_back("pluginlist" + stamp + ".lst");
    }
    for (const std::string& name : names) receiver().write(inBackups(name), "old");
    return names;
  }

  Strings namesOnMedium() { return namesIn(receiver().at(kBackups)); }

  /// Returns the names that were not on the medium before.
  Strings newNames(const Strings& before) {
    Strings names = namesOnMedium();
    std::erase_if(names,
                  [&](const std::string& name) { return std::ranges::count(before, name) > 0; });
    return names;
  }

  /// Expects that the run has failed for this reason, and that nothing old is gone.
  void expectKept(const Outcome& outcome, const std::string& reason, const Strings& before) {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.errors).size(), 1U);
    EXPECT_NE(outcome.errors.find(reason), std::string::npos) << outcome.errors;
    const Strings after = namesOnMedium();
    EXPECT_TRUE(std::ranges::includes(after, before));
  }
};

/// Returns `name` with its time as "STAMP".
std::string withoutTime(std::string name) {
  const std::size_t model = name.find("_solo2");
  return name.replace(model - 14, 14, "STAMP");
}

TEST_F(AutoTest, WritesEveryKindWithOneStampAndSaysSo) {
  const Strings before = namesOnMedium();
  const Outcome outcome = backup();
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  Strings names = newNames(before);
  ASSERT_EQ(names.size(), 4U);
  const std::string stamp = names[0].substr(names[0].find("_solo2") - 14, 14);
  for (std::string& name : names) {
    EXPECT_NE(name.find(stamp), std::string::npos);
    name = withoutTime(name);
  }
  EXPECT_EQ(names,
            (Strings{"configuration_ver_c_STAMP_solo2.auto.tar.gz",
                     "configuration_ver_c_STAMP_solo2.auto.tar.gz_user_files",
                     "pluginlist_STAMP_solo2.auto.lst", "settings_STAMP_solo2.auto.tar.gz"}));
  Strings said = linesOf(outcome.output);
  for (std::string& line : said) {
    line = withoutTime(line);
    line = line.substr(0, line.find(',')) + line.substr(line.rfind(','));
  }
  EXPECT_EQ(said, (Strings{"settings: " + inBackups(names[3]) + ", sound",
                           "config: " + inBackups(names[0]) + ", sound",
                           "config: " + inBackups(names[1]) + ", sound",
                           "plugins: " + inBackups(names[2]) + ", sound"}));
}

TEST_F(AutoTest, DeletesTheOldestWhenAllIsWellAndJsonSaysWhich) {
  putOldBackups();
  const Strings before = namesOnMedium();
  const Outcome outcome = backup({"--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const Json json = Json::parse(outcome.output);
  EXPECT_EQ(json["ok"], true);
  EXPECT_EQ(json["failure"], nullptr);
  const Strings written = newNames(before);
  ASSERT_EQ(json["files"].size(), written.size());
  for (const Json& file : json["files"]) {
    const fs::path path = receiver().at(file["file"]);
    EXPECT_EQ(file["size"], fs::file_size(path));
    EXPECT_EQ(file["sound"], true);
    EXPECT_EQ(file["error"], nullptr);
    EXPECT_EQ(file["notes_total"], 0);
    const std::size_t members =
        path.extension() == ".lst" ? receiver().lines(file["file"]).size() : membersOf(path).size();
    EXPECT_EQ(file["members"], members);
  }
  Strings gone;
  for (const char* kind : {"settings", "configuration_ver_c", "pluginlist"}) {
    for (const char* day : {"02", "01"}) {
      gone.push_back(inBackups(std::string(kind) + "_202403" + day + "_07-04_solo2.auto" +
                               (kind == std::string("pluginlist") ? ".lst" : ".tar.gz")));
    }
  }
  EXPECT_EQ(json["deleted"], Json(gone));
  for (const std::string& file : gone) EXPECT_FALSE(receiver().exists(file)) << file;
  EXPECT_EQ(namesOnMedium().size(), before.size() + written.size() - gone.size());
}

TEST_F(AutoTest, WhatCannotBeRestoredIsRemovedAndNothingOldGoes) {
  putOldBackups();
  const Strings before = namesOnMedium();
  // Cut off, as on a medium that is full.
  receiver().replaceTool(
      "/bin/tar",
      "/bin/tar.real \"$@\"; echo no room >&2; head -c 12000 \"$2\" > /tmp/cut; cp /tmp/cut "
      "\"$2\"");
  expectKept(backup({"--jobs", "settings"}), "is not sound: the file is cut off", before);
  EXPECT_EQ(namesOnMedium(), before);

  receiver().replaceTool("/bin/tar",
                         "case \"$2\" in *_user_files) exit 1;; esac; exec /bin/tar.real \"$@\"");
  expectKept(backup({"--jobs", "config"}), ".auto.tar.gz_user_files was not written", before);
  EXPECT_EQ(namesOnMedium(), before);

  for (const char* name : {"lamedb", "userbouquet.lastscanned.tv"}) {
    fs::remove(receiver().at("/etc/enigma2/") / name);
  }
  expectKept(backup({"--jobs", "settings"}), "is too small to be restored", before);
  EXPECT_EQ(namesOnMedium(), before);
}

TEST_F(AutoTest, ArchiveThatIsOnlyOddStaysAndNothingOldGoes) {
  putOldBackups();
  const Strings before = namesOnMedium();
  ASSERT_EQ(run({"mkfifo", receiver().at("/etc/enigma2/pipe")}).status, 0);
  expectKept(backup({"--jobs", "config"}),
             "is not sound: device, FIFO or other special file: etc/enigma2/pipe", before);
  EXPECT_EQ(newNames(before).size(), 2U);
}

/// Returns the time as the names of scheduled backups have it.
std::string localStamp() {
  const std::time_t now = std::time(nullptr);
  char stamp[32];
  std::strftime(stamp, sizeof stamp, "%Y%m%d_%H-%M", std::localtime(&now));
  return stamp;
}

TEST_F(AutoTest, RunThatIsRefusedSaysWhyBeforeAnythingIsWritten) {
  putOldBackups();
  const Strings old = namesOnMedium();
  receiver().write("/proc/stb/info/model", "box;reboot\n");
  expectKept(backup(), "'box;reboot' cannot be the model of a receiver", old);
  EXPECT_EQ(namesOnMedium(), old);
  receiver().write("/proc/stb/info/model", "solo2\n");

  {
    const std::string lock = receiver().at("/var/run/stowline-auto.lock");
    writeFile(lock, "");
    const base::Descriptor file(open(lock.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(file.number(), LOCK_EX | LOCK_NB), 0);
    expectKept(backup(), "stowline: another scheduled backup is running", old);
    EXPECT_EQ(namesOnMedium(), old);
  }

  // Not where the minute is about to end.
  while (std::time(nullptr) % 60 > 50) std::this_thread::sleep_for(std::chrono::seconds(1));
  const std::string name = "settings_" + localStamp() + "_solo2.auto.tar.gz";
  receiver().write(inBackups(name), "good");
  const Strings with_own = namesOnMedium();
  expectKept(backup(), "there is a scheduled backup of this minute already: " + name, with_own);
  EXPECT_EQ(namesOnMedium(), with_own);
  fs::remove(receiver().at(inBackups(name)));

  receiver().write(inBackups("settings_29980301_07-04_solo2.auto.tar.gz"), "future");
  const Strings with_later = namesOnMedium();
  expectKept(backup(), " is behind a scheduled backup: settings_29", with_later);
  EXPECT_EQ(namesOnMedium(), with_later);
}

/// What makes a backup one that cannot be restored: the file of it that has this content instead.
struct Worthless {
  const char* ending;
  std::string content;
  std::string kind;    ///< that none is good of
  const char* reason;  ///< why the newest is not
};

TEST_F(AutoTest, LastBackupThatCanBeRestoredOutlivesThreeThatCannot) {
  const Strings before = namesOnMedium();
  ASSERT_EQ(backup().status, 0);
  std::map<std::string, std::string> good;
  for (const std::string& name : newNames(before)) {
    good[name] = receiver().read(inBackups(name));
    fs::remove(receiver().at(kBackups) / name);
  }
  const std::string small = receiver().outside() / "small.tar.gz";
  ASSERT_EQ(run({"tar", "-czf", small, "-C", receiver().tree(), "etc/enigma2/whitelist"}).status,
            0);
  const Worthless cases[] = {
      {"_solo2.auto.tar.gz", readFile(small), "settings", " (too small to be restored)"},
      {".tar.gz_user_files", "damaged", "configuration",
       " (_user_files: the file is not compressed by gzip"},
      {".lst", "", "plugins", ""},
  };
  for (const auto& [ending, content, kind, reason] : cases) {
    for (const std::string& name : namesOnMedium()) fs::remove_all(receiver().at(kBackups) / name);
    for (const char* day : {"01", "02", "03", "04"}) {
      for (const auto& [name, bytes] : good) {
        const bool is_worthless = day != std::string("01") && name.ends_with(ending);
        std::string old = name;
        old.replace(name.find("_solo2") - 14, 14, std::string("202403") + day + "_07-04");
        receiver().write(inBackups(old), is_worthless ? content : bytes);
      }
    }
    const Strings old = namesOnMedium();
    expectKept(backup({"--jobs", kind == "settings" ? "plugins" : "settings"}),
               "none of the scheduled backups that would stay is good: " + kind + reason, old);
    EXPECT_EQ(newNames(old).size(), 1U) << kind;
  }
}

TEST_F(AutoTest, OneFailedJobKeepsEverythingOldAndTheOthersResults) {
  putOldBackups();
  const Strings before = namesOnMedium();
  receiver().replaceTool("/bin/tar",
                         "case $2 in *_user_files) echo later >&2;; *.auto.tar.gz) echo no room "
                         ">&2; exit 1;; esac; exec /bin/tar.real \"$@\"");
  const Outcome outcome = backup({"--jobs", "config,plugins", "--json"});
  expectKept(outcome, ".auto.tar.gz was not written (no room)", before);
  EXPECT_EQ(newNames(before).size(), 1U);
  const Json json = Json::parse(outcome.output);
  EXPECT_EQ(json["ok"], false);
  EXPECT_EQ(json["deleted"], Json::array());
  EXPECT_EQ("stowline: nothing old was deleted: " + json["failure"].get<std::string>() + "\n",
            outcome.errors);
}

TEST_F(AutoTest, ErrorOfTheEngineIsSaidAndTheOtherJobsRun) {
  const Strings before = namesOnMedium();
  const std::string skins = "/usr/share/enigma2/vfd_skin";
  fs::remove_all(receiver().at(skins));
  receiver().write(skins, "a file in the place of a directory");
  expectKept(backup(), "config: Not a directory", before);
  EXPECT_EQ(newNames(before).size(), 3U);
}

TEST_F(AutoTest, PluginListIsTrustedOnlyWhenItNamesWhatThePackageManagerDoes) {
  const Strings before = namesOnMedium();
  receiver().replaceTool("/usr/bin/opkg", "echo locked >&2; exit 255");
  expectKept(backup({"--jobs", "plugins"}), "cannot be trusted: opkg does not answer: locked",
             before);
  EXPECT_EQ(namesOnMedium(), before);

  receiver().replaceTool("/usr/bin/opkg", "echo 'enigma2-plugin-skin-a - 1'; exit 1");
  expectKept(backup({"--jobs", "plugins"}), "cannot be trusted: opkg does not answer", before);
  EXPECT_EQ(namesOnMedium(), before);

  receiver().replaceTool("/usr/bin/opkg",
                         "test -e /tmp/once && echo 'enigma2-plugin-skin-a - 1'; > /tmp/once");
  expectKept(backup({"--jobs", "plugins"}), "it does not name the plugins that are installed",
             before);
  EXPECT_EQ(namesOnMedium(), before);

  receiver().replaceTool("/usr/bin/opkg", "echo 'base-files - 3.0'");
  const Outcome outcome = backup({"--jobs", "plugins"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(newNames(before).size(), 1U);
}

TEST_F(AutoTest, OldBackupThatCannotBeDeletedIsSaidAndTheOthersGo) {
  putOldBackups();
  const std::string odd = inBackups("settings_20240302_07-04_solo2.auto.tar.gz");
  fs::remove(receiver().at(odd));
  receiver().write(odd + "/in the way", "");
  receiver().write(inBackups(".stowline-aB3xYz"), "");
  const Outcome outcome = backup({"--json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "stowline: an old file cannot be deleted: Is a directory: '" + odd + "'\n");
  EXPECT_EQ(
      Json::parse(outcome.output)["deleted"],
      Json({inBackups("settings_20240301_07-04_solo2.auto.tar.gz"),
            inBackups("configuration_ver_c_20240302_07-04_solo2.auto.tar.gz"),
            inBackups("configuration_ver_c_20240301_07-04_solo2.auto.tar.gz"),
            inBackups("pluginlist_20240302_07-04_solo2.auto.lst"),
            inBackups("pluginlist_20240301_07-04_solo2.auto.lst"), inBackups(".stowline-aB3xYz")}));
}

TEST_F(AutoTest, BackupThatCannotBeLookedAtIsSaidAndTheOthersAreKeptInOrder) {
  const fs::path backups = receiver().at(kBackups);
  const std::string dead = "settings_20240302_07-04_solo2.auto.tar.gz";
  for (const char* day : {"01", "02", "03", "04", "05"}) {
    receiver().write(inBackups(std::string("settings_202403") + day + "_07-04_solo2.auto.tar.gz"),
                     "old");
  }
  fs::remove(backups / dead);
  fs::create_directory(backups / dead);
  if (const auto reason = whyNot(mountDead(backups / dead))) GTEST_SKIP() << *reason;
  const Outcome outcome =
      backup({"--jobs", "settings", "--json"}, inMountNamespace(mountDead(backups / dead)));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "stowline: 1 of the scheduled backups cannot be looked at: Transport endpoint is not "
            "connected: '" +
                inBackups(dead) + "'\n");
  EXPECT_EQ(Json::parse(outcome.output)["deleted"],
            Json({inBackups("settings_20240303_07-04_solo2.auto.tar.gz"),
                  inBackups("settings_20240301_07-04_solo2.auto.tar.gz")}));
}

TEST_F(AutoTest, MediumThatNeverAnswersIsNotWaitedForAndOneThatIsDeadSaysWhy) {
  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNot(mountSilent(usb))) GTEST_SKIP() << *reason;
  const fs::path backups = usb / "qor-stowline";
  fs::create_directories(backups);
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  const std::pair<std::string, const char*> cases[] = {
      {mountSilent(usb), "stowline: Connection timed out: '/media/usb'\n"},
      {mountDead(usb), "stowline: Transport endpoint is not connected: '/media/usb'\n"},
      {mountSilent(backups), "stowline: Connection timed out: '/media/usb/qor-stowline'\n"},
      {mountDead(backups),
       "stowline: there is no backup directory: Transport endpoint is not connected: "
       "'/media/usb/qor-stowline'\n"},
  };
  for (const auto& [mount, errors] : cases) {
    Strings wrapper = inMountNamespace(mount);
    wrapper.insert(wrapper.end(), {"timeout", "60"});
    const Outcome outcome = backup({}, wrapper);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, errors);
  }
}

TEST_F(AutoTest, ShareThatNeverAnswersAndOddEntriesElsewhereHinderNothing) {
  const fs::path share = receiver().at("/media/net/autonet/share");
  fs::create_directories(share);
  Strings wrapper;
  if (const auto reason = whyNot(mountSilent(share)); !reason) {
    wrapper = inMountNamespace(mountSilent(share));
    wrapper.insert(wrapper.end(), {"timeout", "60"});
  }
  const Outcome silent = backup({"--jobs", "settings"}, wrapper);
  EXPECT_EQ(silent.status, 0) << silent.errors;

  fs::remove_all(receiver().at(kBackups));
  fs::remove_all(receiver().at("/media/net/autofs"));
  receiver().write("/media/net/autofs", "a file in the place of a directory");
  const Outcome odd = backup({"--jobs", "plugins"});
  EXPECT_EQ(odd.status, 0) << odd.errors;
}

TEST_F(AutoTest, BackupDirectoryThatIsALinkOutOfEveryMediumIsRefused) {
  fs::create_directory(receiver().at("/home/root/flash"));
  fs::remove_all(receiver().at(kBackups));
  fs::create_symlink("/home/root/flash", receiver().at(kBackups));
  const Outcome outcome = backup();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors,
            "stowline: the backup directory " + kBackups + " is on no mounted medium\n");
  EXPECT_EQ(namesIn(receiver().at("/home/root/flash")), Strings{});
}

TEST_F(AutoTest, BackupDirectoryThatBecomesALinkOutOfEveryMediumEndsTheRun) {
  putOldBackups();
  const Strings before = namesOnMedium();
  receiver().replaceTool("/bin/tar", "/bin/tar.real \"$@\"; mv " + kBackups +
                                         " /home/root/flash; ln -s ../../home/root/flash " +
                                         kBackups);
  expectKept(backup(),
             "the medium went away: the backup directory " + kBackups + " is on no mounted medium",
             before);
}

TEST_F(AutoTest, MediumThatIsNotMountedOrNotNamedIsSaidAndNotMade) {
  fs::remove_all(receiver().at(kBackups));
  const std::string mounts = receiver().read("/proc/mounts");
  receiver().write("/proc/mounts", "rootfs / rootfs rw 0 0\n");
  const Outcome not_mounted = backup({"--json"});
  EXPECT_EQ(not_mounted.status, 1);
  EXPECT_EQ(not_mounted.errors, "stowline: the medium /media/hdd is not mounted\n");
  EXPECT_EQ(Json::parse(not_mounted.output),
            (Json{{"ok", false},
                  {"failure", "the medium /media/hdd is not mounted"},
                  {"files", Json::array()},
                  {"deleted", Json::array()}}));
  EXPECT_FALSE(receiver().exists(kBackups));

  receiver().write("/proc/mounts", mounts);
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=\n");
  const Outcome not_named = backup();
  EXPECT_EQ(not_named.status, 1);
  EXPECT_EQ(not_named.errors, "stowline: the settings name no medium\n");
}

TEST_F(AutoTest, WhatGoesWrongBesideTheJobsIsInTheReportAsTheSystemSaysIt) {
  const Strings before = namesOnMedium();
  receiver().replaceTool("/bin/tar", "/bin/tar.real \"$@\"; rm -r /tmp");
  const Outcome no_room = backup({"--jobs", "settings,plugins", "--json"});
  expectKept(no_room, "plugins: No such file or directory: '/tmp'; plugins: ", before);
  const Json files = Json::parse(no_room.output)["files"];
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0]["sound"], true);
  EXPECT_EQ(files[1]["error"], "was not written");
  for (const std::string& name : newNames(before)) fs::remove(receiver().at(inBackups(name)));

  fs::create_directory(receiver().at("/tmp"));
  receiver().replaceTool("/bin/tar", "ln -s \"$2\" \"$2\"");
  expectKept(backup({"--jobs", "config"}), "cannot be examined: Too many levels of symbolic links",
             before);
  EXPECT_EQ(namesOnMedium(), before);
}

/// The mount table of a receiver without media.
constexpr const char* kUnmount = "echo rootfs / rootfs rw 0 0 > /proc/mounts";

TEST_F(AutoTest, MediumThatLeavesTheMountTableDuringAJobEndsTheRun) {
  putOldBackups();
  const Strings before = namesOnMedium();
  receiver().replaceTool("/bin/tar", std::string("/bin/tar.real \"$@\"; ") + kUnmount);
  const Outcome outcome = backup({"--json"});
  const std::string reason = "the medium went away: the medium /media/hdd is not mounted";
  expectKept(outcome, reason, before);
  EXPECT_EQ(namesOnMedium(), before);
  const Json files = Json::parse(outcome.output)["files"];
  ASSERT_EQ(files.size(), 1U) << "the other jobs were not begun";
  EXPECT_EQ(files[0]["error"], reason);
}

TEST_F(AutoTest, MediumThatLeavesTheMountTableAfterTheLastJobKeepsEverythingOld) {
  putOldBackups();
  const Strings before = namesOnMedium();
  receiver().replaceTool("/usr/bin/opkg", std::string("test -e /tmp/once && ") + kUnmount +
                                              "; > /tmp/once; echo 'base-files - 3.0'");
  expectKept(backup({"--jobs", "plugins"}), "the medium went away", before);
  EXPECT_EQ(newNames(before).size(), 1U) << "what is sound stays";
}

TEST_F(AutoTest, WhatIsWrittenBeneathAMediumThatIsUnmountedIsRemovedAgain) {
  if (getuid() != 0) GTEST_SKIP() << "only root can do without an enclosure";
  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNoMounts(usb)) GTEST_SKIP() << *reason;
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  fs::create_directories(usb / "qor-stowline");
  receiver().replaceTool("/bin/tar",
                         "case $2 in *_user_files) ;; *configuration*) > /tmp/go; "
                         "while [ -e /tmp/go ]; do sleep 0.01; done ;; esac; "
                         "exec /bin/tar.real \"$@\"");
  const std::string go = receiver().at("/tmp/go");
  const std::string unmount = "{ (for i in $(seq 1000); do [ ! -e " + go +
                              " ] || break; sleep 0.01; done; umount -l " + usb.string() + "; rm " +
                              go + ") & }";
  const Outcome outcome = backup({"--no-enclosure", "--json"},
                                 inMountNamespace(mountSmall(usb, "size=1m") + "; " + unmount));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(linesOf(outcome.errors).back(),
            "stowline: nothing old was deleted: config: the medium went away: "
            "/media/usb/qor-stowline is on another device than before");
  EXPECT_EQ(namesIn(usb), Strings{});
}

TEST_F(AutoTest, PartOfABackupThatAKilledRunLeavesIsNamedAndHindersNoRun) {
  const Strings before = namesOnMedium();
  receiver().replaceTool(
      "/bin/tar",
      "/bin/tar.real \"$@\"; head -c 12000 \"$2\" > /tmp/cut; cat /tmp/cut > \"$2\"; > /tmp/go; "
      "sleep 100");
  const std::string go = receiver().at("/tmp/go");
  const std::string kill_it = "\"$@\" & run=$!; for i in $(seq 1000); do [ ! -e " + go +
                              " ] || break; sleep 0.01; done; kill -9 $run; wait $run";
  EXPECT_EQ(backup({}, {"sh", "-c", kill_it, "sh"}).status, 128 + SIGKILL);
  receiver().waitForProcesses();
  const Strings part = newNames(before);
  ASSERT_EQ(part.size(), 1U);
  fs::rename(receiver().at("/bin/tar.real"), receiver().at("/bin/tar"));
  EXPECT_NE(
      receiver().runHere("doctor").output.find("there is none; newer and not good: " + part[0]),
      std::string::npos);

  const std::string old = "settings_20240305_07-04_solo2.auto.tar.gz";
  receiver().renameBackup(part[0], old);
  const Outcome outcome = backup();
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_TRUE(receiver().exists(inBackups(old)));
}

TEST_F(AutoTest, WhatNobodyCanUseOfAKilledRunIsNamedAndGoesWithTheNextThatIsWell) {
  const std::string own = "configuration_ver_c_20240301_07-04_solo2.auto.tar.gz";
  const Strings useless = {".stowline-aB3xYz", own + "_atile_hd", own + "_user_files"};
  const Strings others = {".stowline-myNote",
                          ".stowline-tooBig",
                          ".stowline-notes.txt",
                          ".stowline-aB3xY/directory",
                          ".stowline-dIr3ct/directory",
                          "configuration_ver_c_20240301_07-04_duo2.auto.tar.gz_user_files",
                          "configuration_ver_c_20240301_07-04_solo2.tar.gz_user_files",
                          "configuration_ver_c_20240302_07-04_solo2.auto.tar.gz",
                          "configuration_ver_c_20240302_07-04_solo2.auto.tar.gz_user_files"};
  for (const Strings& names : {useless, others}) {
    for (const std::string& name : names) receiver().write(inBackups(name), "");
  }
  receiver().write(inBackups(useless[0]), std::string(65536, 'x'));
  receiver().write(inBackups(others[0]), "the user's");
  receiver().write(inBackups(others[1]), std::string(65537, 'x'));
  const Strings before = namesOnMedium();
  EXPECT_NE(receiver().runHere("doctor").output.find(
                useless[0] + ", " + useless[1] + ", " + useless[2] +
                ", of runs that were broken off: the next one removes them\n"),
            std::string::npos);
  receiver().replaceTool("/bin/tar", "exit 1");
  expectKept(backup({"--jobs", "settings"}), "was not written", before);

  fs::rename(receiver().at("/bin/tar.real"), receiver().at("/bin/tar"));
  const Outcome outcome = backup({"--jobs", "settings", "--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  Strings deleted;
  for (const std::string& name : useless) deleted.push_back(inBackups(name));
  EXPECT_EQ(Json::parse(outcome.output)["deleted"], Json(deleted));
  const Strings after = namesOnMedium();
  EXPECT_EQ(after.size(), before.size() + 1 - useless.size());
  for (const std::string& name : others) EXPECT_TRUE(receiver().exists(inBackups(name))) << name;
}

TEST_F(AutoTest, LinkToAMediumAndDirectoryOnOneTakeTheJobsThatAreAskedFor) {
  fs::create_symlink("/media/hdd", receiver().at("/media/disk"));
  fs::create_directory(receiver().at("/media/hdd/box"));
  const std::pair<const char*, const char*> cases[] = {
      {"/media/disk", "/media/hdd"},
      {"/media/hdd/box", "/media/hdd/box"},
      {"/media/disk/box/", "/media/hdd/box"},
  };
  for (const auto& [medium, place] : cases) {
    receiver().write(
        "/etc/enigma2/settings",
        std::string("config.plugins.qorpanel.stowline.backuprestorepath=") + medium + "\n");
    const fs::path backups = receiver().at(std::string(place) + "/qor-stowline");
    fs::remove_all(backups);
    const Outcome outcome = backup({"--jobs", "plugins,settings", "--quiet"});
    EXPECT_EQ(outcome.status, 0) << medium;
    EXPECT_EQ(outcome.output + outcome.errors, "") << medium;
    Strings names = namesIn(backups);
    for (std::string& name : names) name = withoutTime(name);
    EXPECT_EQ(names,
              (Strings{"pluginlist_STAMP_solo2.auto.lst", "settings_STAMP_solo2.auto.tar.gz"}))
        << medium;
  }
}

/// Returns bytes that do not get fewer by being compressed.
std::string noise(std::size_t size) {
  std::mt19937 random(1);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

TEST_F(AutoTest, FullOrReadOnlyMediumIsSaid) {
  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNoMounts(usb)) GTEST_SKIP() << *reason;
  const std::string cannot_write = "cannot write to /media/usb/qor-stowline: ";
  const struct {
    std::string mount;
    std::string reason;
  } kCases[] = {
      {mountSmall(usb, "size=4k,nr_inodes=1"),
       "there is no backup directory: No space left on device"},
      {mountSmall(usb, "size=4k,nr_inodes=2"), cannot_write + "No space left on device\n"},
      {mountSmall(usb, "size=8k"), cannot_write + "No space left on device\n"},
      {mountSmall(usb, "size=68k"), "is not sound: the file is cut off"},
      {mountReadOnly(usb), cannot_write + "Read-only file system\n"},
  };
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  receiver().write("/etc/enigma2/lamedb", noise(100000));
  fs::create_directories(usb / "qor-stowline");
  for (const auto& [mount, reason] : kCases) {
    const Outcome outcome = backup({}, inMountNamespace(mount));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(linesOf(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find(reason), std::string::npos) << outcome.errors;
  }
}

TEST_F(AutoTest, MediumThatIsFullFromTheFirstJobOnIsSaidOnce) {
  const fs::path usb = receiver().at("/media/usb");
  if (const auto reason = whyNoMounts(usb)) GTEST_SKIP() << *reason;
  receiver().write("/etc/enigma2/settings",
                   "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n");
  receiver().replaceTool("/bin/tar", "cat /tmp/large > /media/usb/other; exit 1");
  receiver().write("/tmp/large", std::string(300000, 'x'));
  const Outcome outcome =
      backup({"--jobs", "settings,config"}, inMountNamespace(mountSmall(usb, "size=200k")));
  EXPECT_EQ(outcome.status, 1);
  const std::string reason = "/media/usb/qor-stowline: No space left on device";
  const std::size_t first = outcome.errors.find(reason);
  EXPECT_NE(first, std::string::npos) << outcome.errors;
  EXPECT_EQ(outcome.errors.rfind(reason), first) << outcome.errors;
}

TEST(AutoRefusals, WithoutAReceiverOneLineSaysHowToNameOne) {
  if (fs::exists("/proc/stb/info/model")) GTEST_SKIP() << "this machine is a receiver";
  const Outcome outcome = run({kStowline, "auto", "--json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(linesOf(outcome.errors).size(), 1U);
  EXPECT_NE(outcome.errors.find("name a receiver tree with --receiver DIR"), std::string::npos)
      << outcome.errors;
  EXPECT_EQ("stowline: " + Json::parse(outcome.output)["failure"].get<std::string>() + "\n",
            outcome.errors);
}

TEST(AutoRefusals, UnknownJobIsAUsageErrorThatNamesThem) {
  const Outcome outcome = run({kStowline, "auto", "--jobs", "settings,all"});
  EXPECT_EQ(outcome.status, 2);
  for (const char* word : {"--jobs", "all", "settings", "config", "plugins"}) {
    EXPECT_NE(outcome.errors.find(word), std::string::npos) << outcome.errors;
  }
}

}  // namespace
}  // namespace command_test
