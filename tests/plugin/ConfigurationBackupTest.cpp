#include "tests/plugin/BackupTest.h"

namespace stowline {
namespace {

using namespace expected;

const std::string kArchive =
    "/media/hdd/qor-stowline/configuration_ver_c_20240305_07-04_solo2.tar.gz";

const std::string kBothSkinsSearched = block(R"(
fileExists("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
os_path.exists("/usr/share/enigma2/AtileHD")
os.listdir("/usr/share/enigma2/AtileHD")
os_path.join("/usr/share/enigma2/AtileHD", "colors_atile_mine.xml")
os_path.exists("/usr/share/enigma2/AtileHD/allScreens")
os_path.exists("/usr/share/enigma2/AtileHD/preview")
fileExists("/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list")
os_path.exists("/usr/share/enigma2/vfd_skin")
os.listdir("/usr/share/enigma2/vfd_skin")
os_path.join("/usr/share/enigma2/vfd_skin", "skin_vfd_mine.xml")
)");

struct ConfigurationBackup : BackupTest {
  void addUserFiles() {
    host.system.addDirectory("/usr/share/enigma2/AtileHD", {"colors_atile_mine.xml"});
    host.system.addDirectory("/usr/share/enigma2/vfd_skin", {"skin_vfd_mine.xml"});
  }
};

TEST_F(ConfigurationBackup, ArchivesThePlacesThenTheExclusionsAndNoMoreWithoutUserFiles) {
  EXPECT_EQ(described(actions.call("createConfigFile")), "True");
  EXPECT_EQ(record.take(), backupDirectory() + fileExists(kArchive) +
                               system(support::configurationBackupCommand(kArchive)) +
                               noUserFiles() + fileExists(kArchive));
  EXPECT_EQ(actions.attribute("path"), quoted(kDirectory));
  EXPECT_EQ(actions.attribute("configfile"), quoted(kArchive));
}

TEST_F(ConfigurationBackup, ArchivesTheUserFilesOfBothSkinsBesideIt) {
  addUserFiles();
  EXPECT_EQ(described(actions.call("createConfigFile")), "True");
  EXPECT_EQ(record.take(),
            backupDirectory() + fileExists(kArchive) +
                system(support::configurationBackupCommand(kArchive)) + kBothSkinsSearched +
                system("tar czf " + kArchive +
                       "_user_files /usr/share/enigma2/AtileHD/colors_atile_mine.xml "
                       "/usr/share/enigma2/vfd_skin/skin_vfd_mine.xml") +
                fileExists(kArchive));
}

TEST_F(ConfigurationBackup, KeepsAnOlderUserFilesArchiveOfTheSameName) {
  host.system.addFile(kArchive + "_user_files");
  actions.call("createConfigFile");
  EXPECT_TRUE(host.system.has(kArchive + "_user_files"));
}

TEST_F(ConfigurationBackup, ReportsSuccessByTheConfigurationArchiveAlone) {
  status = 512;
  EXPECT_EQ(described(actions.call("createConfigFile")), "True");
  status = 0;
  has_room = false;
  host.system.addFile(kArchive + "_user_files");
  EXPECT_EQ(described(actions.call("createConfigFile")), "False");
}

TEST_F(ConfigurationBackup, FailedUserFilesArchiveIsNotReported) {
  addUserFiles();
  host.system.shell = [this](const std::string& command) {
    if (command.find("_user_files ") != std::string::npos) return 512;
    return runShell(command);
  };
  EXPECT_EQ(described(actions.call("createConfigFile")), "True");
  EXPECT_FALSE(host.system.has(kArchive + "_user_files"));
}

}  // namespace
}  // namespace stowline
