#include <filesystem>
#include <string>
#include <vector>

#include "tests/command/DeskTest.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

using MediumTest = DeskTest;

const std::vector<std::string> kMedia = {"/media/hdd", "/media/usb", "/media/net/autofs/nas"};
constexpr const char* kSettings = "/etc/enigma2/settings";
constexpr const char* kKey = "config.plugins.qorpanel.stowline.backuprestorepath=";

TEST_F(MediumTest, OffersTheMountedMediaButNoAutomountRootAndNoUnreadableShare) {
  const Play play = receiver().play("backup", "ok down down down up");

  EXPECT_EQ(play.lines,
            (std::vector<Json>{menuFrame("", "backup", 0), choiceFrame("ok", kMedia),
                               choiceFrame("down", kMedia, 1), choiceFrame("down", kMedia, 2),
                               choiceFrame("down", kMedia, 2), choiceFrame("up", kMedia, 1)}));
}

TEST_F(MediumTest, OffersWhatTheMountTableSaysInItsOrder) {
  receiver().write("/proc/mounts",
                   "x /media/usb vfat rw 0 0\n"
                   "x /media ext4 rw 0 0\n"
                   "x /mediax/disk ext4 rw 0 0\n"
                   "x /media/net nfs rw 0 0\n"
                   "x /media/net/autofs autofs rw 0 0\n"
                   "x /media/net/autonet autofs rw 0 0\n"
                   "x /media/net/autonet/attic cifs rw 0 0\n"
                   "/media/alone\n"
                   "x /media/my\\040disk ext4 rw 0 0\n"
                   "x /media/usb vfat rw 0 0\n");
  EXPECT_EQ(receiver().play("restore", "ok").last(),
            choiceFrame("ok", {"/media/usb", "/media/my\\040disk", "/media/usb"}));

  receiver().write("/proc/mounts", "");
  EXPECT_EQ(receiver().play("restore", "ok ok").lines,
            (std::vector<Json>{menuFrame("", "restore", 0), choiceFrame("ok", {}),
                               menuFrame("ok", "restore", 0)}));
}

TEST_F(MediumTest, ChosenMediumIsStoredShownAndUsed) {
  const std::vector<std::string> before = receiver().lines(kSettings);
  const Play play = receiver().play("backup", "ok select:usb ok select:installed ok");

  ASSERT_EQ(play.lines.size(), 6U);
  EXPECT_EQ(play.lines[3], menuFrame("ok", "backup", 0, "/media/usb"));
  std::vector<std::string> expected = before;
  expected.push_back(std::string(kKey) + "/media/usb");
  EXPECT_EQ(receiver().lines(kSettings), expected);
  const std::vector<std::string> files = namesIn(receiver().at("/media/usb/qor-stowline"));
  ASSERT_EQ(files.size(), 1U);
  EXPECT_TRUE(files[0].starts_with("pluginlist_")) << files[0];

  EXPECT_EQ(receiver().play("restore", "").last(), menuFrame("", "restore", 0, "/media/usb"));
  EXPECT_EQ(receiver().play("restore", "ok ok").last(),
            menuFrame("ok", "restore", 0, "/media/hdd"));
  expected.back() = std::string(kKey) + "/media/hdd";
  EXPECT_EQ(receiver().lines(kSettings), expected);
}

TEST_F(MediumTest, DefaultMediumIsNotWritten) {
  const std::string before = receiver().read(kSettings);
  receiver().write("/proc/mounts", "x /media/usb vfat rw 0 0\nx /media/hdd/ ext4 rw 0 0\n");
  receiver().play("backup", "ok ok");
  EXPECT_NE(receiver().read(kSettings), before);

  EXPECT_EQ(receiver().play("backup", "ok down ok").last(), menuFrame("ok", "backup", 0));
  EXPECT_EQ(receiver().read(kSettings), before);
}

TEST_F(MediumTest, LeavingTheBoxKeepsTheMediumAndChecksItAgain) {
  fs::remove_all(receiver().at(kBackups));
  const std::string before = receiver().read(kSettings);
  const Play play = receiver().play("backup", "ok down exit");

  EXPECT_EQ(play.last(), menuFrame("exit", "backup", 0));
  EXPECT_EQ(receiver().read(kSettings), before);
  EXPECT_TRUE(receiver().exists(kBackups));
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

TEST_F(MediumTest, MediumThatHasVanishedListsNothing) {
  receiver().play("restore", "ok down ok");
  fs::remove_all(receiver().at("/media/usb"));
  receiver().write("/media/usb", "");

  const Play play =
      receiver().play("restore", "select:channel ok ok yellow exit select:local ok wait");

  ASSERT_EQ(play.lines.size(), 9U);
  EXPECT_EQ(play.lines[2], listFrame("ok", {}));
  EXPECT_EQ(play.lines[4], listFrame("yellow", {}));
  EXPECT_EQ(play.last(), notWriteableFrame("wait"));
  EXPECT_EQ(play.trace, std::vector<std::string>{"opkg update"});
}

TEST_F(MediumTest, MediumThatVanishesWhileTheMenuIsOpenLeavesEmptyListsAndABox) {
  // The first script takes the medium away, while the menu below stays open.
  receiver().play("restore", "ok down ok");
  receiver().makeScript("/media/usb/qor-stowline/restore_z.sh",
                        "rm -r /media/usb\ntouch /media/usb\n");
  const Play play = receiver().play(
      "restore", "select:script ok ok ok wait ok select:channel ok exit select:local ok wait");

  ASSERT_EQ(play.lines.size(), 13U);
  EXPECT_EQ(play.lines[5], consoleFrame("wait", "", false));
  EXPECT_EQ(play.lines[8], listFrame("ok", {}));
  EXPECT_EQ(play.last(), notWriteableFrame("wait"));
}

}  // namespace
}  // namespace command_test
