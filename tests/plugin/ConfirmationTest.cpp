#include <memory>

#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

using namespace expected;

struct Confirmation : ModuleTest {
  /// Opens the screen for the archive `path`, completes its layout and forgets the operations so
  /// far.
  void open(const std::string& path) {
    opened = std::make_unique<Opened>(*this, "StowlineHelpScreen", "archive.tar.gz"_t, path);
    opened->finishLayout();
    record.take();
  }

  std::unique_ptr<Opened> opened;
};

const std::string kUntagged = "/media/hdd/qor-stowline/configuration_1_solo2.tar.gz";
const std::string kVerA = "/media/hdd/qor-stowline/configuration_ver_a_1_solo2.tar.gz";
const std::string kVerB = "/media/hdd/qor-stowline/configuration_ver_b_1_solo2.tar.gz";
const std::string kVerC = "/media/hdd/qor-stowline/configuration_ver_c_1_solo2.tar.gz";

TEST_F(Confirmation, OpensWithItsWidgetsAndKeys) {
  const Opened screen(*this, "StowlineHelpScreen", "archive.tar.gz"_t, "/archive.tar.gz"_t);
  EXPECT_EQ(record.take(), confirmationOpened());
  EXPECT_EQ(screen.attribute("restorefile"), "\"archive.tar.gz\"");
  EXPECT_EQ(screen.attribute("fullrestorepath"), "\"/archive.tar.gz\"");
  EXPECT_TRUE(screen.object().get("session"_t) == host.session());
  EXPECT_EQ(screen.attribute("title"), "\"Qor Stowline\"");
  EXPECT_EQ(screen.text("messagetext"), "");
}

TEST_F(Confirmation, TitleIsNeverTranslatedAndTheOtherTextsAre) {
  host.translations = {{"Qor Stowline", "wrong"},
                       {"QOR Stowline", "wrong"},
                       {"Exit", "Ende"},
                       {"Ok", "Gut"},
                       {"Are you sure you want to restore\nfollowing backup:\n", "Holen: "},
                       {"\nSystem will restart after the restore!", "Neustart!"}};
  open("/archive.tar.gz");
  EXPECT_EQ(opened->attribute("title"), "\"Qor Stowline\"");
  EXPECT_EQ(opened->text("title"), "Qor Stowline");
  EXPECT_EQ(opened->text("key_red"), "Ende");
  EXPECT_EQ(opened->text("key_green"), "Gut");
  EXPECT_EQ(opened->text("messagetext"), "Holen: archive.tar.gz\n\nNeustart!");
}

TEST_F(Confirmation, RedAndCancelCloseItWithNothingDone) {
  for (const char* key : {"red", "cancel"}) {
    SCOPED_TRACE(key);
    open(kVerC);
    opened->press(key);
    EXPECT_EQ(record.take(), "close()\n");
    EXPECT_EQ(opened->result(), "None");
  }
}

TEST_F(Confirmation, GreenAndOkRestoreAndLeaveItOpen) {
  for (const char* key : {"green", "ok"}) {
    SCOPED_TRACE(key);
    open(kVerC);
    opened->press(key);
    EXPECT_EQ(record.take(), configurationRestored({.archive = kVerC}));
    EXPECT_EQ(opened->result(), "open");
  }
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
      opened->call("keyGo");
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
      opened->call("keyGo");
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
  opened->call("keyGo");
  EXPECT_EQ(record.take(), configurationRestored({.archive = kVerB, .tests_samba = true}));
}

TEST_F(Confirmation, RunsEveryCommandWhateverTheOthersReturn) {
  host.system.shell = [](const std::string&) { return 512; };
  open(kUntagged);
  opened->call("keyGo");
  EXPECT_EQ(
      record.take(),
      configurationRestored({.archive = kUntagged, .keeps_accounts = true, .tests_samba = true}));
}

}  // namespace
}  // namespace stowline
