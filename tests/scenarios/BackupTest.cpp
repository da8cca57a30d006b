#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Expected.h"

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

std::string stampNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d_%H-%M", std::gmtime(&now));
  return text;
}

/// The installed plugins, in the package manager's order.
constexpr const char* kInstalled =
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
    "enigma2-plugin-systemplugins-vfdskinselector\n";

TEST_F(BackupTest, EachKindHoldsWhatItIsMadeOfUnderTimeAndModelAndNothingElseChanges) {
  fs::remove(receiver().at("/etc/localtime"));  // without it, the receiver's time is UTC
  Snapshot before = receiver().content();
  const std::string first_stamp = stampNow();
  const Play play =
      receiver().play("backup", std::string(kPlugins) + "ok " + kSettings + "ok " + kConfiguration);
  const std::string last_stamp = stampNow();

  ASSERT_EQ(play.lines.size(), 9U) << play.errors;
  EXPECT_EQ(play.lines[2], kPluginsDone);
  EXPECT_EQ(play.lines[5], kSettingsDone);
  EXPECT_EQ(play.lines[8], kConfigurationDone);

  const fs::path backups = receiver().at(kBackups);
  const std::string settings = receiver().backup("settings_", ".tar.gz");
  const std::string stamp = settings.substr(9, first_stamp.size());
  EXPECT_TRUE(stamp == first_stamp || stamp == last_stamp) << settings;
  const std::string configuration = "configuration_ver_c_" + stamp + "_solo2.tar.gz";
  const std::string plugins = "pluginlist_" + stamp + "_solo2.lst";
  EXPECT_EQ(namesIn(backups), (std::vector<std::string>{
                                  configuration, configuration + "_user_files", plugins, "plugins",
                                  "restore_hello.sh", "settings_" + stamp + "_solo2.tar.gz"}));

  EXPECT_EQ(membersOf(backups / settings), settingsMembers(receiver().tree()));
  EXPECT_EQ(membersOf(backups / configuration), configurationMembers(receiver().tree()));
  EXPECT_EQ(membersOf(backups / (configuration + "_user_files")), kUserFiles);
  EXPECT_EQ(readFile(backups / plugins), kInstalled);

  Snapshot after = receiver().content();
  forget(before, "media");
  forget(after, "media");
  EXPECT_EQ(changes(before, after), std::vector<std::string>{"+ var/log/enigma2.log"});
}

TEST_F(BackupTest, SettingsArchiveIsMadeThoughAFileIsMissingAndAPatternMatchesNothing) {
  std::vector<fs::path> missing = {receiver().at("/etc/tuxbox/cables.xml")};
  for (const auto& file : fs::directory_iterator(receiver().at("/etc/enigma2"))) {
    if (file.path().extension() == ".radio") missing.push_back(file.path());
  }
  for (const fs::path& file : missing) fs::remove(file);

  EXPECT_EQ(receiver().play("backup", kSettings).last(), kSettingsDone);
  EXPECT_EQ(membersOf(receiver().at(inBackups(receiver().backup("settings_", ".tar.gz")))),
            settingsMembers(receiver().tree()));
}

TEST_F(BackupTest, PluginFilterLooksAtTheWholeLineAndMayLeaveNothing) {
  const std::string other = "Package: other\nVersion: 1\nStatus: install user installed\n\n";
  const std::string oddity =
      "Package: oddity\nVersion: 1-enigma2-plugin\nStatus: install user installed\n\n";
  for (const auto& [status, list] : {std::pair{other, ""}, {oddity + other, "oddity\n"}}) {
    receiver().write("/var/lib/opkg/status", status);
    EXPECT_EQ(receiver().play("backup", kPlugins).last(), kPluginsDone);
    const std::string name = inBackups(receiver().backup("pluginlist_", ".lst"));
    EXPECT_EQ(receiver().read(name), list);
    fs::remove(receiver().at(name));
  }
}

}  // namespace
}  // namespace command_test
