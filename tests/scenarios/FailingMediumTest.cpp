#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Expected.h"
#include "tests/support/command/Namespace.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kAllBackups =
    "select:installed ok ok select:channel ok ok select:configurations ok ok";
constexpr const char* kOnUsb = "config.plugins.qorpanel.stowline.backuprestorepath=/media/usb\n";

class FailingMediumTest : public DeskTest {
 protected:
  void SetUp() override {
    DeskTest::SetUp();
    if (IsSkipped()) return;
    if (const auto reason = whyNoMounts(usb())) GTEST_SKIP() << *reason;
    receiver().write("/etc/enigma2/settings", kOnUsb);
  }

  fs::path usb() { return receiver().at("/media/usb"); }
};

TEST_F(FailingMediumTest, FullMediumLeavesATruncatedArchiveWhichCountsAsDone) {
  const fs::path seen = receiver().outside() / "seen";
  const Play play = receiver().play(
      "backup", "select:channel ok",
      inMountNamespace(mountSmall(usb(), "size=8k"),
                       "cp -r '" + usb().string() + "/qor-stowline' '" + seen.string() + "'"));

  // A job reports by the archive's existence alone.
  EXPECT_EQ(play.last(),
            boxFrame("ok", "info", "QOR Stowline", "Settings backup finished succesfully"));
  const std::vector<std::string> names = namesIn(seen);
  ASSERT_EQ(names.size(), 1U);
  EXPECT_TRUE(names[0].starts_with("settings_")) << names[0];
  EXPECT_LE(fs::file_size(seen / names[0]), 8192U);
  EXPECT_NE(run({"tar", "tzf", seen / names[0]}).status, 0);
  EXPECT_EQ(namesIn(usb()), std::vector<std::string>());
}

TEST_F(FailingMediumTest, MediumWithoutRoomForAFileFailsEveryBackup) {
  // Room for the medium's root and for the backup directory.
  const Play play = receiver().play("backup", kAllBackups,
                                    inMountNamespace(mountSmall(usb(), "size=4k,nr_inodes=2")));

  ASSERT_EQ(play.lines.size(), 10U) << play.errors;
  EXPECT_EQ(play.lines[2],
            boxFrame("ok", "error", "QOR Stowline", "Creating list of installed plugins failed"));
  EXPECT_EQ(play.lines[5], boxFrame("ok", "error", "QOR Stowline", "Backup settings failed"));
  EXPECT_EQ(play.lines[8],
            boxFrame("ok", "error", "QOR Stowline", "Backup of common configurations failed"));
  EXPECT_EQ(play.events(), std::vector<Json>());
  EXPECT_EQ(play.status, 0);
}

TEST_F(FailingMediumTest, ReadOnlyMediumStillRestoresButNothingIsRunOrDeletedOnIt) {
  const std::string script = "/media/usb/qor-stowline/restore_x.sh";
  receiver().play("backup", "select:channel ok");
  const std::string archive = namesIn(usb() / "qor-stowline").front();
  receiver().makeScript(script, "touch /ran\n");
  const Play play =
      receiver().play("restore", "select:script ok ok ok yellow ok exit select:channel ok ok",
                      inMountNamespace(mountReadOnly(usb())));

  ASSERT_EQ(play.events().size(), 2U) << play.errors;
  for (const Json& event : play.events()) {
    const std::string text = event["text"];
    EXPECT_TRUE(text.starts_with("OSError: ")) << text;
    EXPECT_NE(text.find("Read-only file system"), std::string::npos) << text;
  }
  EXPECT_FALSE(receiver().exists("/ran"));
  EXPECT_TRUE(receiver().exists(script));
  EXPECT_EQ(play.last(), boxFrame("ok", "info", "", "Restoring settings finished successfully"));
  EXPECT_EQ(play.trace, settingsRestoreCommands("/media/usb/qor-stowline/" + archive));
}

}  // namespace
}  // namespace command_test
