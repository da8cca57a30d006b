#include <memory>

#include "plugin/src/StowlineHelpScreen.h"
#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

using namespace expected;

struct Confirmation : ModuleTest {
  /// Opens the screen for the archive `path`, completes its layout and forgets the operations so
  /// far.
  void open(const std::string& path) {
    opened = std::make_unique<Opened<StowlineHelpScreen>>(*this, "archive.tar.gz", path);
    opened->peer.finishLayout();
    record.take();
  }

  std::unique_ptr<Opened<StowlineHelpScreen>> opened;
};

const std::string kUntagged = "/media/hdd/qor-stowline/configuration_1_solo2.tar.gz";
const std::string kVerA = "/media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz";
const std::string kVerB = "/media/hdd/qor-stowline/configuration_ver_b_1_solo2.tar.gz";
const std::string kVerC = "/media/hdd/qor-stowline/configuration_ver_c_1_solo2.tar.gz";

TEST_F(Confirmation, OpensWithItsWidgetsAndKeys) {
  const Opened<StowlineHelpScreen> screen(*this, "archive.tar.gz", "/archive.tar.gz");
  EXPECT_EQ(record.take(), confirmationOpened());
  EXPECT_EQ(screen.screen.restorefile, "archive.tar.gz");
  EXPECT_EQ(screen.screen.fullrestorepath, "/archive.tar.gz");
  EXPECT_EQ(screen.screen.session, &session);
  EXPECT_EQ(screen.screen.title, "Qor Stowline");
  EXPECT_EQ(screen.peer.text("messagetext"), "");
}

TEST_F(Confirmation, TitleIsNeverTranslatedAndTheOtherTextsAre) {
  host.translations = {{"Qor Stowline", "wrong"},
                       {"QOR Stowline", "wrong"},
                       {"Exit", "Ende"},
                       {"Ok", "Gut"},
                       {"Are you sure you want to restore\nfollowing backup:\n", "Holen: "},
                       {"\nSystem will restart after the restore!", "Neustart!"}};
  open("/archive.tar.gz");
  EXPECT_EQ(opened->screen.title, "Qor Stowline");
  EXPECT_EQ(opened->peer.text("title"), "Qor Stowline");
  EXPECT_EQ(opened->peer.text("key_red"), "Ende");
  EXPECT_EQ(opened->peer.text("key_green"), "Gut");
  EXPECT_EQ(opened->peer.text("messagetext"), "Holen: archive.tar.gz\n\nNeustart!");
}

TEST_F(Confirmation, ShowsTheBackupAndTheWarningWhenTheLayoutIsComplete) {
  Opened<StowlineHelpScreen> screen(*this, "archive.tar.gz", "/archive.tar.gz");
  record.take();
  screen.peer.finishLayout();
  EXPECT_EQ(record.take(), block(R"(
_("Are you sure you want to restore\nfollowing backup:\n")
_("\nSystem will restart after the restore!")
self["messagetext"].setText("Are you sure you want to restore\nfollowing backup:\narchive.tar.gz\n\n\nSystem will restart after the restore!")
)"));
}

TEST_F(Confirmation, ToleratesASkinWithoutATitleWithALineInTheLog) {
  const std::string widgetSet = "self[\"title\"] = StaticText(\"Qor Stowline\")";
  journal.failOn(widgetSet, {"SkinError", "no title"});
  const Opened<StowlineHelpScreen> screen(*this, "archive.tar.gz", "/archive.tar.gz");
  std::string operations = confirmationOpened();
  operations.insert(operations.find(widgetSet) + widgetSet.size() + 1,
                    print("self[\"title\"] was not found in skin"));
  EXPECT_EQ(record.take(), operations);
}

TEST_F(Confirmation, RedAndCancelCloseItWithNothingDone) {
  for (const char* key : {"red", "cancel"}) {
    SCOPED_TRACE(key);
    open(kVerC);
    opened->peer.press(key);
    EXPECT_EQ(record.take(), "close()\n");
    EXPECT_TRUE(opened->peer.closed->isNothing());
  }
}

TEST_F(Confirmation, GreenAndOkRestoreAndLeaveItOpen) {
  for (const char* key : {"green", "ok"}) {
    SCOPED_TRACE(key);
    open(kVerC);
    opened->peer.press(key);
    EXPECT_EQ(record.take(), configurationRestored({.archive = kVerC}));
    EXPECT_FALSE(opened->peer.closed);
  }
}

TEST_F(Confirmation, CurrentArchivePrintsNothingAndStartsWithThePictures) {
  open(kVerC);
  opened->screen.keyGo();
  EXPECT_EQ(record.take(), block(R"(
fileExists("/media/hdd/qor-stowline/configuration_ver_c_1_solo2.tar.gz_atile_hd")
fileExists("/media/hdd/qor-stowline/configuration_ver_c_1_solo2.tar.gz_user_files")
fileExists("/proc/stb/vmpeg/0/dst_width")
os.system("mkdir -p /usr/share/enigma2/skin_default/spinner/tmp")
os.system("mv /usr/share/enigma2/skin_default/spinner/*.png /usr/share/enigma2/skin_default/spinner/tmp")
os.system("/etc/init.d/current_cam.sh stop ; tar -xzf /media/hdd/qor-stowline/configuration_ver_c_1_solo2.tar.gz -C /")
os.system("echo \"[Qor Stowline] syncing ...\" ;  /bin/sync ; sleep 1")
os.system("if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  mv /usr/share/enigma2/skin_default/spinner/tmp/*.png /usr/share/enigma2/skin_default/spinner ; fi ; rm -rf /usr/share/enigma2/skin_default/spinner/tmp")
os.system("rm -rf /.qws")
os.system("if [ ! -L \"/etc/resolv.conf\" ] ; then rm /var/run/resolv.conf ; mv /etc/resolv.conf /var/run/resolv.conf ; ln -s /var/run/resolv.conf /etc/resolv.conf ; fi")
os.system("/etc/init.d/networking stop ; /etc/init.d/networking start ; /etc/init.d/current_cam.sh start ; killall -9 enigma2")
)"));
}

TEST_F(Confirmation, OldArchiveKeepsAccountsAndSambaAndRemovesThePasswdCopyTwice) {
  host.system.addFile("/etc/samba/smb.conf");
  for (const char* companion : {"_atile_hd", "_user_files"}) host.system.addFile(kVerA + companion);
  host.system.addFile("/proc/stb/vmpeg/0/dst_width");
  open(kVerA);
  opened->screen.keyGo();
  EXPECT_EQ(record.take(), block(R"(
print("[Qor Stowline] do not restore old OE tree configuration files")
os_path.exists("/etc/samba/smb.conf")
print("[Qor Stowline] do not restore old samba configuration")
fileExists("/media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz_atile_hd")
fileExists("/media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz_user_files")
os_path.exists("/etc/samba/smb.conf")
print("[Qor Stowline] restore installed smb.conf")
fileExists("/proc/stb/vmpeg/0/dst_width")
os.system("cat /etc/fstab > /etc/fstab_backup")
os.system("cat /etc/passwd > /etc/passwd_backup")
os.system("cat /etc/shadow > /etc/shadow_backup")
os.system("cat /etc/samba/smb.conf > /etc/samba/smb_backup")
os.system("mkdir -p /usr/share/enigma2/skin_default/spinner/tmp")
os.system("mv /usr/share/enigma2/skin_default/spinner/*.png /usr/share/enigma2/skin_default/spinner/tmp")
os.system("/etc/init.d/current_cam.sh stop ; tar -xzf /media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz -C /")
os.system("tar -xzf /media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz_atile_hd -C /")
os.system("tar -xzf /media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz_user_files -C /")
os.system("echo \"[Qor Stowline] syncing ...\" ;  /bin/sync ; sleep 1")
os.system("if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  mv /usr/share/enigma2/skin_default/spinner/tmp/*.png /usr/share/enigma2/skin_default/spinner ; fi ; rm -rf /usr/share/enigma2/skin_default/spinner/tmp")
os.system("rm -rf /.qws")
os.system("if [ ! -L \"/etc/resolv.conf\" ] ; then rm /var/run/resolv.conf ; mv /etc/resolv.conf /var/run/resolv.conf ; ln -s /var/run/resolv.conf /etc/resolv.conf ; fi")
os.system("cat /etc/samba/smb_backup > /etc/samba/smb.conf ; rm /etc/samba/smb_backup")
os.system("cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup")
os.system("cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup")
os.system("cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup")
os.system("chmod -x /etc/auto.network")
os.system("echo 00000000 > /proc/stb/vmpeg/0/dst_height")
os.system("echo 00000000 > /proc/stb/vmpeg/0/dst_left")
os.system("echo 00000000 > /proc/stb/vmpeg/0/dst_top")
os.system("echo 00000000 > /proc/stb/vmpeg/0/dst_width")
os.system("/etc/init.d/networking stop ; /etc/init.d/networking start ; /etc/init.d/current_cam.sh start ; killall -9 enigma2")
)"));
}

struct Rank {
  std::string path;
  bool keeps_accounts;
  bool tests_samba;
};

const Rank kRanks[] = {
    {kUntagged, true, true},
    {kVerA, true, true},
    {kVerB, false, true},
    {kVerC, false, false},
    {"/media/configuration_ver_a/qor-stowline/configuration_ver_c_1.tar.gz", true, true},
    {"/media/configuration_ver_c/qor-stowline/configuration_ver_a_1.tar.gz", true, true},
    {"/media/configuration_ver_b/qor-stowline/configuration_ver_a_1.tar.gz", true, true},
    {"/media/configuration_ver_a/qor-stowline/configuration_ver_b_1.tar.gz", true, true},
    {"/media/configuration_ver_c/qor-stowline/configuration_ver_b_1.tar.gz", false, true},
    {"/media/configuration_ver_c/qor-stowline/configuration_1.tar.gz", false, false},
    {"/media/hdd/qor-stowline/configuration_ver_d_1.tar.gz", true, true},
    {"/media/hdd/qor-stowline/configuration_Ver_c_1.tar.gz", true, true},
};

TEST_F(Confirmation, KeepsWhatTheVersionTagInTheWholePathAsksFor) {
  for (const Rank& rank : kRanks) {
    for (const bool has_samba : {false, true}) {
      SCOPED_TRACE(rank.path + (has_samba ? " with samba" : " without samba"));
      if (has_samba) host.system.addFile("/etc/samba/smb.conf");
      open(rank.path);
      opened->screen.keyGo();
      EXPECT_EQ(record.take(), configurationRestored({.archive = rank.path,
                                                      .keeps_accounts = rank.keeps_accounts,
                                                      .tests_samba = rank.tests_samba,
                                                      .has_samba = rank.tests_samba && has_samba}));
      host.system.dropFile("/etc/samba/smb.conf");
    }
  }
}

TEST_F(Confirmation, UnpacksTheCompanionsThatLieBesideTheArchive) {
  for (const bool has_atile : {false, true}) {
    for (const bool has_user_files : {false, true}) {
      SCOPED_TRACE(std::to_string(has_atile) + std::to_string(has_user_files));
      host.system.dropFile(kVerB + "_atile_hd");
      host.system.dropFile(kVerB + "_user_files");
      if (has_atile) host.system.addFile(kVerB + "_atile_hd");
      if (has_user_files) host.system.addFile(kVerB + "_user_files");
      open(kVerB);
      opened->screen.keyGo();
      EXPECT_EQ(record.take(), configurationRestored({.archive = kVerB,
                                                      .tests_samba = true,
                                                      .has_atile = has_atile,
                                                      .has_user_files = has_user_files}));
    }
  }
}

TEST_F(Confirmation, SambaIsTestedBeforeAnyCommandRuns) {
  host.system.shell = [this](const std::string&) {
    host.system.addFile("/etc/samba/smb.conf");
    return 0;
  };
  open(kVerB);
  opened->screen.keyGo();
  EXPECT_EQ(record.take(), configurationRestored({.archive = kVerB, .tests_samba = true}));
}

TEST_F(Confirmation, ResetsTheVideoWindowWhereThereIsOne) {
  host.system.addFile("/proc/stb/vmpeg/0/dst_width");
  open(kVerC);
  opened->screen.keyGo();
  EXPECT_EQ(record.take(), configurationRestored({.archive = kVerC, .has_video_window = true}));
}

TEST_F(Confirmation, RunsEveryCommandWhateverTheOthersReturn) {
  host.system.shell = [](const std::string&) { return 512; };
  open(kUntagged);
  opened->screen.keyGo();
  EXPECT_EQ(
      record.take(),
      configurationRestored({.archive = kUntagged, .keeps_accounts = true, .tests_samba = true}));
}

}  // namespace
}  // namespace stowline
