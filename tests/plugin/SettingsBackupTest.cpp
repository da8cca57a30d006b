#include "tests/plugin/BackupTest.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kArchive = "/media/hdd/qor-stowline/settings_20240305_07-04_solo2.tar.gz";

using SettingsBackup = BackupTest;

TEST_F(SettingsBackup, ArchivesTheEightChannelPlacesInTheirOrder) {
  EXPECT_EQ(described(actions.call("createSettingFile")), "True");
  EXPECT_EQ(record.take(), backupDirectory() + fileExists(kArchive) +
                               system(support::settingsBackupCommand(kArchive)) +
                               fileExists(kArchive));
  EXPECT_EQ(actions.attribute("path"), quoted(kDirectory));
  EXPECT_EQ(actions.attribute("settingfile"), quoted(kArchive));
}

TEST_F(SettingsBackup, FailedSecondRunLeavesNoArchive) {
  actions.call("createSettingFile");
  has_room = false;
  EXPECT_EQ(described(actions.call("createSettingFile")), "False");
  EXPECT_FALSE(host.system.has(kArchive));
}

TEST_F(SettingsBackup, ReportsSuccessByTheArchiveAloneNotByTarsStatus) {
  status = 512;
  EXPECT_EQ(described(actions.call("createSettingFile")), "True");
  status = 0;
  has_room = false;
  EXPECT_EQ(described(actions.call("createSettingFile")), "False");
}

TEST_F(SettingsBackup, WritesNoneForADirectoryThatCouldNotBeHad) {
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  has_room = false;
  const std::string archive = "None/settings_20240305_07-04_solo2.tar.gz";
  EXPECT_EQ(described(actions.call("createSettingFile")), "False");
  EXPECT_EQ(record.take(), backupDirectory() + fileExists(archive) +
                               system(support::settingsBackupCommand(archive)) +
                               fileExists(archive));
  EXPECT_EQ(actions.attribute("path"), "None");
  EXPECT_EQ(actions.attribute("settingfile"), quoted(archive));
}

TEST_F(SettingsBackup, LeavesBlanksInTheMediumUnquoted) {
  setMedium("/media/my disk");
  host.system.addDirectory("/media/my disk/qor-stowline");
  actions.call("createSettingFile");
  const std::string archive = "/media/my disk/qor-stowline/settings_20240305_07-04_solo2.tar.gz";
  EXPECT_EQ(record.take(), backupDirectory("/media/my disk/qor-stowline") + fileExists(archive) +
                               system(support::settingsBackupCommand(archive)) +
                               fileExists(archive));
}

}  // namespace
}  // namespace stowline
