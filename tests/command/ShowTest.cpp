#include "tests/command/ShowTest.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/Expected.h"
#include "tests/support/command/Namespace.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

TEST_F(ShowTest, MembersAreListedAndTheRestoreIsThatOfWhereTheBackupLies) {
  const Outcome outcome = show(pathOf(settings_), {"--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const Json shown = Json::parse(outcome.output);
  EXPECT_EQ(pathsOf(shown["members"]), membersOf(pathOf(settings_)));
  EXPECT_EQ(shown["count"], shown["members"].size());
  EXPECT_EQ(shown["restore"], Json());
  EXPECT_EQ(linesOf(show(pathOf(settings_)).output).back(),
            "what a restore would do on a receiver is shown with --against DIR");

  // Outside of the receiver: as if it lay in the backup directory.
  const std::string outside = receiver().outside() / settings_;
  fs::rename(pathOf(settings_), outside);
  const auto restoreAt = [this](const std::string& file) {
    return Json::parse(show(file, {"--json", "--against", receiver().tree()}).output)["restore"];
  };
  const Json as_own = restoreAt(outside);
  EXPECT_EQ(as_own["archive"], inBackups(settings_));
  EXPECT_EQ(as_own["commands"], Json(settingsRestoreCommands(inBackups(settings_))));
  EXPECT_EQ(pathsOf(as_own, "delete"), Lines{"/etc/enigma2/userbouquet.later.tv"});

  const std::string usb = "/media/usb/qor-stowline/" + configuration_;
  fs::create_directories(receiver().at(usb).parent_path());
  fs::rename(pathOf(configuration_), receiver().at(usb));
  const Json on_usb = restoreAt(receiver().at(usb));
  EXPECT_EQ(on_usb["archive"], usb);
  EXPECT_EQ(on_usb["commands"][2], "/etc/init.d/current_cam.sh stop ; tar -xzf " + usb + " -C /");
}

TEST_F(ShowTest, BackupThatTheListRefusesShowsNoCommandAndADamagedOneWhatCouldBeRead) {
  const struct {
    const char* name;
    std::size_t size;
    const char* refusal;
  } kCases[] = {
      {"settings_20240305_07-04_duo2.tar.gz", 0,
       "the restore list does not show it: it is of another model (duo2), and this is a solo2"},
      {"other.tar.gz", 0, "the restore list does not show it: its name is not that of a backup"},
      {"settings_20240305_07-04_solo2.tar.gz", 9999,
       "the restore list ignores it: it is too small"},
  };
  for (const auto& [name, size, refusal] : kCases) {
    const std::string whole = readFile(pathOf(settings_));
    writeFile(pathOf(name), size == 0 ? whole : whole.substr(0, size));
    const Outcome outcome = showHere(name, {"--json"});
    EXPECT_EQ(outcome.status, size == 0 ? 0 : 1) << outcome.errors;
    const Json restore = Json::parse(outcome.output)["restore"];
    EXPECT_EQ(restore["refused"], refusal);
    EXPECT_EQ(restore["commands"], Json::array());
    EXPECT_EQ(restore["changes"], Json::array());
    fs::remove(pathOf(name));
  }

  const std::string name = "settings_20240305_07-04_solo2.tar.gz";
  writeFile(pathOf(name), readFile(pathOf(settings_)).substr(0, 12000));
  const Outcome outcome = showHere(name, {"--json"});
  const Json shown = Json::parse(outcome.output);
  const Lines whole = membersOf(pathOf(settings_));
  const Lines read = pathsOf(shown["members"]);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(!read.empty() && read.size() < whole.size() && std::ranges::includes(whole, read));
  EXPECT_EQ(outcome.errors, "stowline: " + shown["damage"].get<std::string>() + "\n");
  EXPECT_TRUE(outcome.errors.starts_with("stowline: " + pathOf(name) + ": the file is cut off"))
      << outcome.errors;
  EXPECT_EQ(pathsOf(shown["restore"], "add").size() + pathsOf(shown["restore"], "change").size(),
            read.size());
}

TEST_F(ShowTest, LinksOfTheReceiverThatPointOutsideAreNotFollowed) {
  const fs::path outside = receiver().outside() / "outside";
  fs::create_directories(outside);
  writeFile(outside / "userbouquet.outside.tv", "secret");
  writeFile(outside / "settings",
            "config.plugins.qorpanel.stowline.backuprestorepath=/elsewhere/\n");
  fs::remove_all(receiver().at("/etc/enigma2"));
  fs::create_symlink(outside, receiver().at("/etc/enigma2"));
  const Json restore = restoreOf(settings_);
  EXPECT_EQ(restore["archive"], inBackups(settings_));
  EXPECT_EQ(pathsOf(restore, "delete"), Lines());
  Lines blocked;
  for (const std::string& member : membersOf(pathOf(settings_))) {
    if (member.starts_with("etc/enigma2/")) blocked.push_back("/" + member);
  }
  Lines told = pathsOf(restore, "blocked");
  std::ranges::sort(told);
  EXPECT_EQ(told, blocked);
}

TEST_F(ShowTest, WholeSystemCanBeTheReceiver) {
  if (const auto reason = whyNoMounts("/proc")) GTEST_SKIP() << *reason;
  // A /proc that names a model, and of the true one has what starts a program.
  const std::string real = receiver().outside() / "proc";
  fs::create_directory(real);
  std::vector<std::string> argv = withoutLeakCheck(inMountNamespace(
      "mount --rbind /proc " + real + " && mount -t tmpfs tmpfs /proc && ln -s " + real +
      "/self /proc && mkdir -p /proc/stb/info && echo solo2 > /proc/stb/info/model"));
  const std::string name = receiver().outside() / "qor-stowline" / settings_;
  fs::create_directories(receiver().outside() / "qor-stowline");
  fs::rename(pathOf(settings_), name);
  for (const std::string& word :
       {std::string(kStowline), std::string("show"), name, std::string("--against"),
        std::string("/"), std::string("--json")}) {
    argv.push_back(word);
  }
  const Outcome outcome = run(argv);
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const Json restore = Json::parse(outcome.output)["restore"];
  EXPECT_EQ(restore["commands"], Json(settingsRestoreCommands(name)));
  EXPECT_EQ(pathsOf(restore, "add").size(), membersOf(name).size());
}

TEST(ShowRefusals, OneLineSaysWhatIsWrong) {
  const support::TemporaryDirectory empty;
  const struct {
    Lines arguments;
    int status;
    std::string errors;
  } kCases[] = {
      {{}, 2, "stowline: FILE is required (see 'stowline show --help')\n"},
      {{"x", "--diff"}, 2, "stowline: --diff requires --against (see 'stowline show --help')\n"},
      {{"x", "--against", empty.path()},
       1,
       "stowline: " + empty.path() +
           " is no receiver: No such file or directory: '/proc/stb/info/model'\n"},
  };
  for (const auto& [arguments, status, errors] : kCases) {
    Lines argv = {kStowline, "show"};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    const Outcome outcome = run(argv);
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, errors);
  }
}

class UnreadableShowTest : public ShowTest {
 protected:
  Account account() const override { return Account::ordinary; }
};

TEST_F(UnreadableShowTest, WhatMayNotBeReadIsSaidAndEndsNothing) {
  const std::string name = "settings_20240305_07-04_solo2.tar.gz";
  writeFile(receiver().at("/etc/large"), readFile(pathOf(settings_)));
  const Outcome tar = run({"tar", "-czf", pathOf(name), "--mode=0", "-C", receiver().tree(),
                           "etc/large", "etc/hostname", "etc/tuxbox/cables.xml"});
  ASSERT_EQ(tar.status, 0) << tar.errors;
  chmod(receiver().at("/etc/large").c_str(), 0);
  chmod(receiver().at("/etc/tuxbox").c_str(), 0);

  const Json restore = restoreOf(name);
  const Outcome diff = showHere(name, {"--diff"});

  chmod(receiver().at("/etc/tuxbox").c_str(), 0755);
  EXPECT_EQ(pathsOf(restore, "unreadable"),
            (Lines{"/etc/tuxbox/satellites.xml", "/etc/tuxbox/terrestrial.xml",
                   "/etc/tuxbox/cables.xml", "/etc/large"}));
  EXPECT_EQ(pathsOf(restore, "change"), Lines{"/etc/hostname"});
  EXPECT_EQ(diff.status, 0) << diff.errors;
}

}  // namespace
}  // namespace command_test
