#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/command/DeskTest.h"
#include "tests/command/Expected.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using BackupTest = DeskTest;

constexpr const char* kPlugins = "select:installed ok ";
constexpr const char* kSettings = "select:channel ok ";
constexpr const char* kConfiguration = "select:configurations ok ";

const Json kPluginsDone =
    boxFrame("ok", "info", "QOR Stowline", "List of installed plugins was created succesfully");
const Json kSettingsDone =
    boxFrame("ok", "info", "QOR Stowline", "Settings backup finished succesfully");
const Json kConfigurationDone =
    boxFrame("ok", "info", "QOR Stowline", "Common configuration backup finished succesfully");

/// What the user of the laid-out receiver has made of the two skins.
const std::vector<std::string> kUserFiles = {
    "usr/share/enigma2/AtileHD/allScreens/skin_infobar_Mine.xml",
    "usr/share/enigma2/AtileHD/colors_atile_Harbour.xml",
    "usr/share/enigma2/AtileHD/font_atile_Large.xml",
    "usr/share/enigma2/AtileHD/preview/preview_infobar_Mine.png",
    "usr/share/enigma2/vfd_skin/skin_vfd_Kitchen.xml",
};

/// Names that must be in the archive, or must not, whatever the rules make of the tree.
const std::vector<std::string> kSomeStored = {"etc/enigma2/settings",
                                              "etc/passwd",
                                              "etc/resolv.conf",
                                              "etc/samba/smb.conf",
                                              "usr/scam/cardrelay.conf",
                                              "etc/CCrelay.cfg",
                                              "etc/tuxbox/config/cardrelay.conf"};
const std::vector<std::string> kSomeExcluded = {
    "etc/enigma2/lamedb",    "etc/enigma2/userbouquet.news.tv", "etc/enigma2/bouquets.radio",
    "etc/enigma2/whitelist", "etc/enigma2/blacklist",           "etc/enigma2/key.pem",
    "etc/enigma2/profile",   "etc/tuxbox/config/enigma.cfg"};

std::string stampNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d_%H-%M", std::gmtime(&now));
  return text;
}

TEST_F(BackupTest, NamesCarryTheTimeAndTheModel) {
  fs::remove(receiver().at("/etc/localtime"));  // without it, the receiver's time is UTC
  const std::string before = stampNow();
  receiver().play("backup", std::string(kPlugins) + "ok " + kSettings + "ok " + kConfiguration);
  const std::string after = stampNow();

  const std::string name = receiver().backup("settings_", ".tar.gz");
  const std::string stamp = name.substr(9, before.size());
  EXPECT_TRUE(stamp == before || stamp == after) << name;
  EXPECT_EQ(namesIn(receiver().at(kBackups)),
            (std::vector<std::string>{"configuration_ver_c_" + stamp + "_solo2.tar.gz",
                                      "configuration_ver_c_" + stamp + "_solo2.tar.gz_user_files",
                                      "pluginlist_" + stamp + "_solo2.lst", "plugins",
                                      "restore_hello.sh", "settings_" + stamp + "_solo2.tar.gz"}));
}

TEST_F(BackupTest, SettingsArchiveHoldsTheChannelFiles) {
  const Play play = receiver().play("backup", kSettings);

  const std::string archive = kBackups + "/" + receiver().backup("settings_", "_solo2.tar.gz");
  EXPECT_EQ(play.last(), kSettingsDone);
  EXPECT_EQ(play.trace, std::vector<std::string>{settingsBackupCommand(archive)});
  EXPECT_EQ(play.log, std::vector<std::string>());
  const std::vector<std::string> members = membersOf(receiver().at(archive));
  EXPECT_EQ(members, settingsMembers(receiver().tree()));
  EXPECT_EQ(std::ranges::count(members, "etc/enigma2/userbouquet.news.tv"), 1);
  EXPECT_EQ(std::ranges::count(members, "etc/tuxbox/cables.xml"), 1);
}

TEST_F(BackupTest, SettingsArchiveIsMadeThoughAFileIsMissing) {
  fs::remove(receiver().at("/etc/tuxbox/cables.xml"));

  EXPECT_EQ(receiver().play("backup", kSettings).last(), kSettingsDone);
  EXPECT_EQ(membersOf(receiver().at(kBackups + "/" + receiver().backup("settings_", ".tar.gz"))),
            settingsMembers(receiver().tree()));
}

TEST_F(BackupTest, SettingsArchiveIsMadeThoughAPatternMatchesNothing) {
  std::vector<fs::path> radio;
  for (const auto& file : fs::directory_iterator(receiver().at("/etc/enigma2"))) {
    if (file.path().extension() == ".radio") radio.push_back(file.path());
  }
  for (const fs::path& file : radio) fs::remove(file);

  EXPECT_EQ(receiver().play("backup", kSettings).last(), kSettingsDone);
  EXPECT_EQ(membersOf(receiver().at(kBackups + "/" + receiver().backup("settings_", ".tar.gz"))),
            settingsMembers(receiver().tree()));
}

TEST_F(BackupTest, ConfigurationArchiveLeavesOutWhatIsExcluded) {
  receiver().play("backup", "exit");
  const std::vector<std::string> expected = configurationMembers(receiver().tree());
  const Play play = receiver().play("backup", kConfiguration);

  const std::string archive =
      kBackups + "/" + receiver().backup("configuration_ver_c_", "_solo2.tar.gz");
  EXPECT_EQ(play.last(), kConfigurationDone);
  ASSERT_EQ(play.trace.size(), 2U);
  EXPECT_EQ(play.trace[0], configurationBackupCommand(archive));
  const std::vector<std::string> members = membersOf(receiver().at(archive));
  EXPECT_EQ(members, expected);
  for (const std::string& name : kSomeStored) {
    EXPECT_EQ(std::ranges::count(members, name), 1) << name;
  }
  for (const std::string& name : kSomeExcluded) {
    EXPECT_TRUE(fs::exists(receiver().tree() / name)) << name;
    EXPECT_EQ(std::ranges::count(members, name), 0) << name;
  }
}

TEST_F(BackupTest, UserFilesArchiveHoldsExactlyWhatTheUserHasMade) {
  const Play play = receiver().play("backup", kConfiguration);

  const std::string archive =
      kBackups + "/" + receiver().backup("configuration_ver_c_", "_user_files");
  EXPECT_EQ(membersOf(receiver().at(archive)), kUserFiles);
  // In the order in which the directories list them, which is the file system's affair.
  ASSERT_EQ(play.trace.size(), 2U);
  std::string command = "tar czf " + archive;
  EXPECT_EQ(play.trace[1].substr(0, command.size()), command);
  std::size_t length = command.size();
  for (const std::string& file : kUserFiles) {
    EXPECT_NE(play.trace[1].find(" /" + file), std::string::npos) << file;
    length += 2 + file.size();
  }
  EXPECT_EQ(play.trace[1].size(), length);
}

TEST_F(BackupTest, NoUserFilesNoArchiveOfThem) {
  for (const std::string& file : kUserFiles) ASSERT_TRUE(fs::remove(receiver().tree() / file));
  const Play play = receiver().play("backup", kConfiguration);

  const std::string archive = kBackups + "/" + receiver().backup("configuration", "");
  EXPECT_TRUE(archive.ends_with("_solo2.tar.gz")) << archive;
  EXPECT_EQ(play.last(), kConfigurationDone);
  EXPECT_EQ(play.trace, std::vector<std::string>{configurationBackupCommand(archive)});
}

TEST_F(BackupTest, PluginListNamesTheInstalledPluginsInThePackageManagersOrder) {
  const Play play = receiver().play("backup", kPlugins);

  const std::string list = kBackups + "/" + receiver().backup("pluginlist_", "_solo2.lst");
  EXPECT_EQ(play.last(), kPluginsDone);
  EXPECT_EQ(play.trace, std::vector<std::string>{kInstalledPlugins + " >> " + list});
  EXPECT_EQ(receiver().read(list),
            "enigma2-plugin-extensions-enigmalight\n"
            "enigma2-plugin-extensions-foreca\n"
            "enigma2-plugin-extensions-hbbtv\n"
            "enigma2-plugin-extensions-multiquickbutton\n"
            "enigma2-plugin-extensions-shoutcast\n"
            "enigma2-plugin-extensions-webinterface\n"
            "enigma2-plugin-extensions-webradiofs\n"
            "enigma2-plugin-settings-meridian\n"
            "enigma2-plugin-skin-atile\n"
            "enigma2-plugin-systemplugins-crashreport\n"
            "enigma2-plugin-systemplugins-pipservicerelation\n"
            "enigma2-plugin-systemplugins-qorpanel\n"
            "enigma2-plugin-systemplugins-vfdskinselector\n");
}

TEST_F(BackupTest, EmptyPluginListIsASuccess) {
  receiver().write("/var/lib/opkg/status", "");

  EXPECT_EQ(receiver().play("backup", kPlugins).last(), kPluginsDone);
  EXPECT_EQ(receiver().read(kBackups + "/" + receiver().backup("pluginlist_", ".lst")), "");
}

TEST_F(BackupTest, PluginFilterLooksAtTheWholeLine) {
  receiver().write("/var/lib/opkg/status",
                   "Package: oddity\nVersion: 1-enigma2-plugin\nStatus: install user installed\n\n"
                   "Package: other\nVersion: 1\nStatus: install user installed\n\n");
  receiver().play("backup", kPlugins);

  EXPECT_EQ(receiver().read(kBackups + "/" + receiver().backup("pluginlist_", ".lst")), "oddity\n");
}

/// Of every kind, the words that make it and the prefix and suffix of its file.
struct Kind {
  const char* words;
  const char* prefix;
  const char* suffix;
};

constexpr Kind kKinds[] = {
    {kPlugins, "pluginlist_", ".lst"},
    {kSettings, "settings_", ".tar.gz"},
    {kConfiguration, "configuration_ver_c_", ".tar.gz"},
};

TEST_F(BackupTest, SecondBackupOfOneOpeningReplacesTheFirst) {
  for (const auto& [words, prefix, suffix] : kKinds) {
    SCOPED_TRACE(prefix);
    const Play play = receiver().play("backup", std::string(words) + "timeout ok");

    // One file, or backup() raises.
    const std::string file = kBackups + "/" + receiver().backup(prefix, suffix);
    const std::size_t half = play.trace.size() / 2;
    ASSERT_EQ(play.trace.size(), 2 * half + 1);
    EXPECT_EQ(play.trace[half], "rm -f " + file);
    for (std::size_t i = 0; i < half; ++i) EXPECT_EQ(play.trace[half + 1 + i], play.trace[i]);
  }
  EXPECT_EQ(std::ranges::count(
                receiver().lines(kBackups + "/" + receiver().backup("pluginlist_", ".lst")),
                "enigma2-plugin-skin-atile"),
            1);
}

TEST_F(BackupTest, ChangesNothingButTheMediumAndTheLog) {
  const Snapshot before = receiver().content();
  receiver().play("backup", std::string(kPlugins) + "ok " + kSettings + "ok " + kConfiguration);

  Snapshot after = receiver().content();
  forget(after, "media");
  Snapshot expected = before;
  forget(expected, "media");
  EXPECT_EQ(changes(expected, after), std::vector<std::string>{"+ var/log/enigma2.log"});
}

}  // namespace
}  // namespace command_test
