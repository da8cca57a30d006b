#include "plugin/src/StowlineHelpScreen.h"
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
    peer().press(key);
    EXPECT_EQ(record.take(), selected(kSettings) + settingsRestored(fullPath(kSettings)) +
                                 channelsReloaded() + kSuccessBox);
    session.answer(true);
    EXPECT_EQ(record.take(), "close()\n");
  }
  EXPECT_EQ(described(list().sel), quoted(kSettings));
  EXPECT_EQ(described(list().val), quoted(fullPath(kSettings)));
  EXPECT_FALSE(list().exe);
}

TEST_F(Restore, DoesNotLookAtWhatItsCommandsReturn) {
  addFile(kSettings);
  openList("settingrestore");
  host.system.shell = [](const std::string&) { return 512; };
  EXPECT_TRUE(list().restoreSettings());
}

TEST_F(Restore, LeavesTheChannelListAloneWithoutAnInfoBar) {
  host.channelDatabase.hasInfoBar = false;
  openList("settingrestore");
  list().val = "/a.tar.gz";
  EXPECT_TRUE(list().restoreSettings());
  EXPECT_EQ(record.take(), settingsRestored("/a.tar.gz") + block(R"(
nimmanager.readTransponders()
eDVBDB.getInstance().reloadServicelist()
eDVBDB.getInstance().reloadBouquets()
InfoBar.instance.servicelist
)"));
}

TEST_F(Restore, OpensTheConfirmationOfAConfigurationAndStaysBeneathIt) {
  addFile(kConfiguration);
  openList("configrestore");
  peer().press("ok");
  EXPECT_EQ(record.take(), selected(kConfiguration) + "session.open(StowlineHelpScreen, " +
                               quoted(kConfiguration) + ", " + quoted(fullPath(kConfiguration)) +
                               ")\n");
  EXPECT_FALSE(peer().closed);

  RecordingPeer confirmation_peer(journal);
  const auto screen =
      std::get<host::ScreenClass>(session.lastOpened()).create(confirmation_peer, session);
  const auto& confirmation = dynamic_cast<const StowlineHelpScreen&>(*screen);
  EXPECT_EQ(confirmation.restorefile, kConfiguration);
  EXPECT_EQ(confirmation.fullrestorepath, fullPath(kConfiguration));
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
    peer().press("ok");
    const std::string operations = record.take();
    EXPECT_TRUE(operations.starts_with(selected(size.name)));
    EXPECT_EQ(operations != selected(size.name), size.is_restored);
  }
}

TEST_F(Restore, VanishedFileDoesNothing) {
  addFile(kSettings);
  openList("settingrestore");
  host.system.dropFile(fullPath(kSettings));
  peer().press("ok");
  EXPECT_EQ(record.take(), kCurrent + exists(fullPath(kSettings)));
  EXPECT_EQ(described(list().sel), quoted(kSettings));
  EXPECT_EQ(described(list().val), quoted(fullPath(kSettings)));
}

TEST_F(Restore, UnknownAndClearedRestoreTypesMakeOkANoOp) {
  addFile(kSettings);
  openList("settingrestore");
  for (const char* type : {"", "installlocalplugin", "installpluginlist", "Settingrestore"}) {
    SCOPED_TRACE(type);
    list().restoretype = type;
    peer().press("ok");
    EXPECT_EQ(record.take(), selected(kSettings));
  }
}

TEST_F(Restore, OkAndYellowDoNothingWhileAnActionIsUnderWayOrNothingWasListed) {
  addFile(kSettings);
  openList("settingrestore");
  for (const auto& [entry, exe] : {std::pair(true, true), {false, false}, {false, true}}) {
    list().entry = entry;
    list().exe = exe;
    for (const char* key : {"ok", "green", "yellow"}) peer().press(key);
    EXPECT_EQ(record.take(), "");
  }
}

TEST_F(Restore, ActsOnTheRowUnderTheCursor) {
  addFile("settings_1.tar.gz");
  addFile("settings_2.tar.gz", 9999);
  openList("settingrestore");
  rows().cursor = 1;
  peer().press("ok");
  EXPECT_TRUE(record.take().starts_with(selected("settings_1.tar.gz") +
                                        settingsRestored(fullPath("settings_1.tar.gz"))));
}

TEST_F(Restore, NoRowUnderTheCursorDoesNothingAndKeepsTheSelection) {
  addFile(kSettings);
  openList("settingrestore");
  list().sel = "before";
  list().val = "/before";
  rows().rows.clear();
  for (const char* key : {"ok", "yellow"}) {
    peer().press(key);
    EXPECT_EQ(record.take(), kCurrent);
    EXPECT_EQ(described(list().sel), "\"before\"");
    EXPECT_EQ(described(list().val), "\"/before\"");
  }
}

TEST_F(Restore, NoBackupDirectoryDoesNothingAndKeepsTheSelection) {
  addFile(kSettings);
  openList("settingrestore");
  list().path = std::nullopt;
  for (const char* key : {"ok", "yellow"}) {
    peer().press(key);
    EXPECT_EQ(record.take(), kCurrent);
    EXPECT_EQ(described(list().sel), "()");
    EXPECT_EQ(described(list().val), "()");
  }
}

TEST_F(Restore, ConsoleRestoreNeedsAnAnswerThatEqualsTrue) {
  openList("settingrestore");
  list().sel = kSettings;
  for (const host::Value& answer : {host::Value(false), host::Value(), host::Value(2),
                                    host::Value("yes"), host::Value(host::Value::List{true})}) {
    SCOPED_TRACE(described(answer));
    list().startRestore(answer);
    EXPECT_EQ(record.take(), "");
    EXPECT_FALSE(list().exe);
  }
  list().startRestore();
  EXPECT_EQ(record.take(), "");
  list().startRestore(1);
  EXPECT_NE(record.take(), "");
}

TEST_F(Restore, ConsoleRestoreAndScriptsNeedASelectedFileAndABackupDirectory) {
  openList("settingrestore");
  for (const bool has_file : {false, true}) {
    SCOPED_TRACE(has_file);
    if (has_file) {
      list().sel = kSettings;
      list().path.reset();
    }
    list().startRestore(true);
    list().runScript(true);
    EXPECT_EQ(record.take(), "");
    EXPECT_FALSE(list().exe);
  }
}

TEST_F(Restore, DeletingNeedsASelectedFile) {
  addFile("[]");
  openList("settingrestore");
  list().startDelete(true);
  EXPECT_EQ(record.take(), "");
  EXPECT_FALSE(list().exe);
}

TEST_F(Restore, TranslatesItsMessages) {
  host.translations = {{"Restoring settings finished successfully", "Fertig"},
                       {"Restoring settings failed", "Gescheitert"},
                       {"Restore running", "Arbeitet"}};
  addFile(kSettings);
  openList("settingrestore");
  peer().press("ok");
  EXPECT_EQ(std::get<host::MessageBox>(session.lastOpened()).text, "Fertig");
  journal.failOn("nimmanager.readTransponders()", {"RuntimeError", "no tuner"});
  peer().press("ok");
  EXPECT_EQ(std::get<host::MessageBox>(session.lastOpened()).text, "Gescheitert");
  list().startRestore(true);
  EXPECT_EQ(std::get<host::Console>(session.lastOpened()).title, "Arbeitet");
}

}  // namespace
}  // namespace stowline
