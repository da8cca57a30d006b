#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using MediumTest = DeskTest;

const std::vector<std::string> kMedia = {"/media/hdd", "/media/usb", "/media/net/autofs/nas"};
constexpr const char* kSettingsFile = "/etc/enigma2/settings";
constexpr const char* kKey = "config.plugins.qorpanel.stowline.backuprestorepath=";

TEST_F(MediumTest, ChosenMediumOfThoseThatCanBeReadIsStoredShownAndUsed) {
  const std::vector<std::string> before = receiver().lines(kSettingsFile);
  const Play play = receiver().play("backup", "ok select:usb ok select:installed ok");

  ASSERT_EQ(play.lines.size(), 6U);
  EXPECT_EQ(play.lines[1], choiceFrame("ok", kMedia));
  EXPECT_EQ(play.lines[3], menuFrame("ok", "backup", 0, "/media/usb"));
  std::vector<std::string> expected = before;
  expected.push_back(std::string(kKey) + "/media/usb");
  EXPECT_EQ(receiver().lines(kSettingsFile), expected);
  const std::vector<std::string> files = namesIn(receiver().at("/media/usb/qor-stowline"));
  ASSERT_EQ(files.size(), 1U);
  EXPECT_TRUE(files[0].starts_with("pluginlist_")) << files[0];

  EXPECT_EQ(receiver().play("restore", "").last(), menuFrame("", "restore", 0, "/media/usb"));
  EXPECT_EQ(receiver().play("restore", "ok ok").last(),
            menuFrame("ok", "restore", 0, "/media/hdd"));
  expected.back() = std::string(kKey) + "/media/hdd";
  EXPECT_EQ(receiver().lines(kSettingsFile), expected);
}

TEST_F(MediumTest, MediumThatIsNoDirectoryIsNotWriteable) {
  fs::remove_all(receiver().at("/media/usb"));
  receiver().write("/media/usb", "");
  const Play play = receiver().play("backup",
                                    "ok down ok timeout select:installed ok ok "
                                    "select:channel ok ok select:configurations ok");

  ASSERT_EQ(play.lines.size(), 13U);
  EXPECT_EQ(play.lines[3], notWriteableFrame("ok"));
  EXPECT_EQ(play.lines[4], menuFrame("timeout", "backup", 0, "/media/usb"));
  EXPECT_EQ(play.lines[6],
            boxFrame("ok", "error", "QOR Stowline", "Creating list of installed plugins failed"));
  EXPECT_EQ(play.lines[9], boxFrame("ok", "error", "QOR Stowline", "Backup settings failed"));
  EXPECT_EQ(play.lines[12],
            boxFrame("ok", "error", "QOR Stowline", "Backup of common configurations failed"));
  EXPECT_EQ(namesIn(receiver().at(kBackups)),
            (std::vector<std::string>{"plugins", "restore_hello.sh"}));
}

}  // namespace
}  // namespace command_test
