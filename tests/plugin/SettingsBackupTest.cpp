#include "tests/plugin/BackupTest.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kArchive = "/media/hdd/qor-stowline/settings_20240305_07-04_solo2.tar.gz";

using SettingsBackup = BackupTest;

TEST_F(SettingsBackup, ArchivesTheEightChannelPlacesInTheirOrder) {
  EXPECT_EQ(described(actions.createSettingFile()), "True");
  EXPECT_EQ(record.take(), backupDirectory() + fileExists(kArchive) +
                               system(support::settingsBackupCommand(kArchive)) +
                               fileExists(kArchive));
  EXPECT_EQ(actions.path, kDirectory);
  EXPECT_EQ(actions.settingfile, kArchive);
}

TEST_F(SettingsBackup, FailedSecondRunLeavesNoArchive) {
  actions.createSettingFile();
  has_room = false;
  EXPECT_EQ(described(actions.createSettingFile()), "False");
  EXPECT_FALSE(host.system.has(kArchive));
}

TEST_F(SettingsBackup, ReportsSuccessByTheArchiveAloneNotByTarsStatus) {
  status = 512;
  EXPECT_EQ(described(actions.createSettingFile()), "True");
  status = 0;
  has_room = false;
  EXPECT_EQ(described(actions.createSettingFile()), "False");
}

TEST_F(SettingsBackup, WritesNoneForADirectoryThatCouldNotBeHad) {
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  has_room = false;
  const std::string archive = "None/settings_20240305_07-04_solo2.tar.gz";
  EXPECT_EQ(described(actions.createSettingFile()), "False");
  EXPECT_EQ(record.take(), backupDirectory() + fileExists(archive) +
                               system(support::settingsBackupCommand(archive)) +
                               fileExists(archive));
  EXPECT_EQ(actions.path, std::nullopt);
  EXPECT_EQ(actions.settingfile, archive);
}

TEST_F(SettingsBackup, LeavesBlanksInTheMediumUnquoted) {
  setMedium("/media/my disk");
  host.system.addDirectory("/media/my disk/qor-stowline");
  actions.createSettingFile();
  const std::string archive = "/media/my disk/qor-stowline/settings_20240305_07-04_solo2.tar.gz";
  EXPECT_EQ(record.take(), backupDirectory("/media/my disk/qor-stowline") + fileExists(archive) +
                               system(support::settingsBackupCommand(archive)) +
                               fileExists(archive));
}

}  // namespace
}  // namespace stowline
