#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

using Restore = RestoreListTest;

const std::string kCurrent = "self[\"filelist\"].getCurrent()\n";
const std::string kSettings = "settings_20240305_07-04_solo2.tar.gz";
const std::string kConfiguration = "configuration_ver_c_20240305_07-04_solo2.tar.gz";

std::string fullPath(const std::string& name) {
  return kDirectory + "/" + name;
}

std::string selected(const std::string& name) {
  return kCurrent + exists(fullPath(name)) + "os_stat(" + quoted(fullPath(name)) + ").st_size\n";
}

const std::string kSuccessBox = block(R"(
_("Restoring settings finished successfully")
session.openWithCallback(keyCancel, MessageBox, "Restoring settings finished successfully", TYPE_INFO, timeout=10)
)");

TEST_F(Restore, ReplacesTheChannelFilesReloadsThemAndClosesWithItsMessage) {
  addFile(kSettings);
  openList("settingrestore");
  for (const char* key : {"ok", "green"}) {
    SCOPED_TRACE(key);
    list().press(key);
    EXPECT_EQ(record.take(), selected(kSettings) + settingsRestored(fullPath(kSettings)) +
                                 channelsReloaded() + kSuccessBox);
    host.answer(true);
    EXPECT_EQ(record.take(), "close()\n");
  }
  EXPECT_EQ(list().attribute("sel"), quoted(kSettings));
  EXPECT_EQ(list().attribute("val"), quoted(fullPath(kSettings)));
  EXPECT_EQ(list().attribute("exe"), "False");
}

TEST_F(Restore, DoesNotLookAtWhatItsCommandsReturn) {
  addFile(kSettings);
  openList("settingrestore");
  host.system.shell = [](const std::string&) { return 512; };
  EXPECT_EQ(described(list().call("restoreSettings")), "True");
}

TEST_F(Restore, LeavesTheChannelListAloneWithoutAnInfoBar) {
  host.has_info_bar = false;
  openList("settingrestore");
  list().set("val", "/a.tar.gz"_t);
  EXPECT_EQ(described(list().call("restoreSettings")), "True");
  EXPECT_EQ(record.take(), settingsRestored("/a.tar.gz") + block(R"(
nimmanager.readTransponders()
eDVBDB.getInstance().reloadServicelist()
eDVBDB.getInstance().reloadBouquets()
)"));
}

TEST_F(Restore, OpensTheConfirmationOfAConfigurationAndStaysBeneathIt) {
  addFile(kConfiguration);
  openList("configrestore");
  list().press("ok");
  EXPECT_EQ(record.take(), selected(kConfiguration) + "session.open(StowlineHelpScreen, " +
                               quoted(kConfiguration) + ", " + quoted(fullPath(kConfiguration)) +
                               ")\n");
  EXPECT_EQ(list().result(), "open");

  const Opened confirmation(*this, host.opened.back());
  EXPECT_EQ(confirmation.attribute("restorefile"), quoted(kConfiguration));
  EXPECT_EQ(confirmation.attribute("fullrestorepath"), quoted(fullPath(kConfiguration)));
}

struct Size {
  const char* restoretype;
  const char* name;
  long long bytes;
  bool is_restored;
};

constexpr Size kSizes[] = {
    {"settingrestore", "settings_1.tar.gz", 0, false},
    {"settingrestore", "settings_1.tar.gz", 9999, false},
    {"settingrestore", "settings_1.tar.gz", 10000, true},
    {"configrestore", "configuration_1.tar.gz", 9999, false},
    {"configrestore", "configuration_1.tar.gz", 10000, true},
    {"configrestore", "configuration_1.tar.gz", 5000000000, true},
    {"plugininstall", "pluginlist_1.lst", 0, true},
    {"personalscript", "restore_1.sh", 0, true},
};

TEST_F(Restore, IgnoresArchivesBelowTenThousandBytesWithoutAMessage) {
  for (const Size& size : kSizes) {
    SCOPED_TRACE(size.name + std::string(" of ") + std::to_string(size.bytes));
    host.system.addDirectory(kDirectory);
    addFile(size.name, size.bytes);
    openList(size.restoretype);
    list().press("ok");
    const std::string operations = record.take();
    EXPECT_TRUE(operations.starts_with(selected(size.name)));
    EXPECT_EQ(operations != selected(size.name), size.is_restored);
  }
}

TEST_F(Restore, VanishedFileDoesNothing) {
  addFile(kSettings);
  openList("settingrestore");
  host.system.dropFile(fullPath(kSettings));
  list().press("ok");
  EXPECT_EQ(record.take(), kCurrent + exists(fullPath(kSettings)));
  EXPECT_EQ(list().attribute("sel"), quoted(kSettings));
  EXPECT_EQ(list().attribute("val"), quoted(fullPath(kSettings)));
}

TEST_F(Restore, UnknownAndClearedRestoreTypesMakeOkANoOp) {
  addFile(kSettings);
  openList("settingrestore");
  for (const char* type : {"", "installlocalplugin", "installpluginlist", "Settingrestore"}) {
    SCOPED_TRACE(type);
    list().set("restoretype", std::string(type));
    list().press("ok");
    EXPECT_EQ(record.take(), selected(kSettings));
  }
}

TEST_F(Restore, OkAndYellowDoNothingWhileAnActionIsUnderWayOrNothingWasListed) {
  addFile(kSettings);
  openList("settingrestore");
  for (const auto& [entry, exe] : {std::pair(true, true), {false, false}, {false, true}}) {
    list().set("entry", entry);
    list().set("exe", exe);
    for (const char* key : {"ok", "green", "yellow"}) list().press(key);
    EXPECT_EQ(record.take(), "");
  }
}

TEST_F(Restore, ActsOnTheRowUnderTheCursor) {
  addFile("settings_1.tar.gz");
  addFile("settings_2.tar.gz", 9999);
  openList("settingrestore");
  rows().cursor = 1;
  list().press("ok");
  EXPECT_TRUE(record.take().starts_with(selected("settings_1.tar.gz") +
                                        settingsRestored(fullPath("settings_1.tar.gz"))));
}

TEST_F(Restore, NoRowUnderTheCursorDoesNothingAndKeepsTheSelection) {
  addFile(kSettings);
  openList("settingrestore");
  list().set("sel", "before"_t);
  list().set("val", "/before"_t);
  rows().rows = host::list();
  for (const char* key : {"ok", "yellow"}) {
    list().press(key);
    EXPECT_EQ(record.take(), kCurrent);
    EXPECT_EQ(list().attribute("sel"), "\"before\"");
    EXPECT_EQ(list().attribute("val"), "\"/before\"");
  }
}

TEST_F(Restore, NoBackupDirectoryDoesNothingAndKeepsTheSelection) {
  addFile(kSettings);
  openList("settingrestore");
  list().set("path", Object());
  for (const char* key : {"ok", "yellow"}) {
    list().press(key);
    EXPECT_EQ(record.take(), kCurrent);
    EXPECT_EQ(list().attribute("sel"), "[]");
    EXPECT_EQ(list().attribute("val"), "[]");
  }
}

TEST_F(Restore, ConsoleRestoreNeedsAnAnswerThatEqualsTrue) {
  openList("settingrestore");
  list().set("sel", kSettings);
  for (const Object& answer :
       {Object(false), Object(), Object(2), Object("yes"_t), host::list({true})}) {
    SCOPED_TRACE(described(answer));
    list().call("startRestore", {answer});
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(list().attribute("exe"), "False");
  }
  list().call("startRestore");
  EXPECT_EQ(record.take(), "");
  list().call("startRestore", {1});
  EXPECT_NE(record.take(), "");
}

TEST_F(Restore, ConsoleRestoreAndScriptsNeedASelectedFileAndABackupDirectory) {
  openList("settingrestore");
  for (const bool has_file : {false, true}) {
    SCOPED_TRACE(has_file);
    if (has_file) {
      list().set("sel", kSettings);
      list().set("path", Object());
    }
    list().call("startRestore", {true});
    list().call("runScript", {true});
    EXPECT_EQ(record.take(), "");
    EXPECT_EQ(list().attribute("exe"), "False");
  }
}

TEST_F(Restore, DeletingNeedsASelectedFile) {
  addFile("[]");
  openList("settingrestore");
  list().call("startDelete", {true});
  EXPECT_EQ(record.take(), "");
  EXPECT_EQ(list().attribute("exe"), "False");
}

TEST_F(Restore, TranslatesItsMessages) {
  host.translations = {{"Restoring settings finished successfully", "Fertig"},
                       {"Restoring settings failed", "Gescheitert"},
                       {"Restore running", "Arbeitet"}};
  addFile(kSettings);
  openList("settingrestore");
  list().press("ok");
  EXPECT_EQ(described(host.opened.back().arguments.at(0)), "\"Fertig\"");
  journal.failOn("nimmanager.readTransponders()", {"RuntimeError", "no tuner"});
  list().press("ok");
  EXPECT_EQ(described(host.opened.back().arguments.at(0)), "\"Gescheitert\"");
  list().call("startRestore", {true});
  EXPECT_EQ(described(host.opened.back().keyword("title")), "\"Arbeitet\"");
}

}  // namespace
}  // namespace stowline
