#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

using Names = std::vector<std::string>;
using RestoreList = RestoreListTest;

TEST_F(RestoreList, IsBuiltAndFilledInItsConstructor) {
  addFile("settings_20240304_07-04_solo2.tar.gz");
  addFile("settings_20240305_07-04_solo2.tar.gz");
  const Opened<StowlineRestore> list(*this, "settingrestore", "/plugin");
  EXPECT_EQ(record.take(), restoreListBegun("/plugin") +
                               listed({"settings_20240305_07-04_solo2.tar.gz",
                                       "settings_20240304_07-04_solo2.tar.gz"}) +
                               restoreListEnded());
}

TEST_F(RestoreList, StartsWithItsDocumentedState) {
  openList("configrestore");
  EXPECT_EQ(list().skin_path, "/plugin");
  EXPECT_EQ(list().restoretype, "configrestore");
  EXPECT_EQ(list().title, "QOR Stowline");
  EXPECT_EQ(list().session, &session);
  EXPECT_EQ(described(list().sel), "()");
  EXPECT_EQ(described(list().val), "()");
  EXPECT_FALSE(list().entry);
  EXPECT_FALSE(list().exe);
  EXPECT_EQ(list().path, kDirectory);
  EXPECT_EQ(list().flist, Names{});
  EXPECT_TRUE(list().cmdList.empty());
  EXPECT_NE(list().Console, nullptr);
  EXPECT_NE(list().ipkg, nullptr);
}

TEST_F(RestoreList, TranslatesItsTexts) {
  host.translations = {{"QOR Stowline", "Sicherung"},
                       {"Close", "Zu"},
                       {"Install", "Holen"},
                       {"Delete", "Weg"},
                       {"Start", "Los"}};
  openList("settingrestore");
  EXPECT_EQ(peer().text("title"), "Sicherung");
  EXPECT_EQ(peer().text("key_red"), "Zu");
  EXPECT_EQ(peer().text("key_green"), "Holen");
  EXPECT_EQ(peer().text("key_yellow"), "Weg");
  addFile("backup.sh");
  openList("personalscript");
  EXPECT_EQ(peer().text("key_green"), "Los");
}

TEST_F(RestoreList, GreenLabelIsInstallForEveryTypeButListedScripts) {
  for (const char* name : {"settings_1.tar.gz", "configuration_1.tar.gz", "pluginlist_1.lst"}) {
    addFile(name);
  }
  for (const char* type : {"settingrestore", "configrestore", "plugininstall", "personalscript"}) {
    SCOPED_TRACE(type);
    openList(type);
    EXPECT_EQ(peer().text("key_green"), "Install");
  }
}

TEST_F(RestoreList, EachListedScriptSetsTheGreenLabelToStartAnew) {
  addFile("restore_a.sh");
  addFile("other.sh");
  addFile("backup_b.sh");
  const Opened<StowlineRestore> list(*this, "personalscript", "/plugin");
  EXPECT_EQ(record.take(), restoreListBegun("/plugin") + backupDirectory() +
                               "HardwareInfoVu().get_device_name()\n" + listdir(kDirectory) +
                               label("key_green", "Start") + label("key_green", "Start") +
                               "self[\"filelist\"].l.setList([\"restore_a.sh\", "
                               "\"backup_b.sh\"])\n" +
                               restoreListEnded());
  EXPECT_EQ(list.peer.text("key_green"), "Start");
}

/// Which restore types list a name, on a receiver of any model.
struct Kind {
  const char* name;
  const char* listed_for;
};

constexpr Kind kKinds[] = {
    {"pluginlist_x.lst", "plugininstall"},
    {"pluginlist.lst", "plugininstall"},
    {"pluginlist_x.tar.gz", ""},
    {"Pluginlist_x.lst", ""},
    {"my_pluginlist_x.lst", ""},
    {"settings_x.tar.gz", "settingrestore"},
    {"settings.tar.gz", "settingrestore"},
    {"settings_x.lst", ""},
    {"settings_x.tar.gz_user_files", ""},
    {"setting_x.tar.gz", ""},
    {"configuration_x.tar.gz", "configrestore"},
    {"configuration_ver_c_x.tar.gz", "configrestore"},
    {"configuration_x.tar.gz_atile_hd", ""},
    {"configuration_x.tar.gz_user_files", ""},
    {"configuration_x.tgz", ""},
    {"backup.sh", "personalscript"},
    {"restore_me.sh", "personalscript"},
    {"backup settings.sh", "personalscript"},
    {"Backup.sh", ""},
    {"restore_me.SH", ""},
    {"my_restore.sh", ""},
    {"settings_x.sh", ""},
    {"plugins", ""},
};

TEST_F(RestoreList, ListsANameByItsBeginningItsEndingAndTheRestoreType) {
  for (const Kind& kind : kKinds) {
    host.system.addDirectory(kDirectory, {kind.name});
    for (const char* type :
         {"settingrestore", "configrestore", "plugininstall", "personalscript", "", "other"}) {
      SCOPED_TRACE(kind.name + std::string(" for ") + type);
      const bool is_listed = *type && std::string(type) == kind.listed_for;
      openList(type);
      EXPECT_EQ(list().flist, is_listed ? Names{kind.name} : Names{});
      EXPECT_EQ(rows().rows, list().flist);
      EXPECT_EQ(list().entry, is_listed);
    }
  }
}

/// The models on which a name is listed.
struct Box {
  const char* name;
  Names models;
};

const Names kModels = {"solo", "duo", "uno", "ultimo", "solo2", "duo2", "solose", "zero"};

const Box kBoxes[] = {
    {"settings_1_solo.tar.gz", {"solo"}},        {"settings_1_duo.tar.gz", {"duo"}},
    {"settings_1_uno.tar.gz", {"uno"}},          {"settings_1_ultimo.tar.gz", {"ultimo"}},
    {"settings_1_solo2.tar.gz", {"solo2"}},      {"settings_1_duo2.tar.gz", {"duo2"}},
    {"settings_1_solose.tar.gz", {"solose"}},    {"settings_1_zero.tar.gz", {"zero"}},
    {"settings_1_solo2.auto.tar.gz", {"solo2"}}, {"settings_1.tar.gz", kModels},
    {"settings_1_Solo2.tar.gz", kModels},        {"settings_1_solo3.tar.gz", kModels},
    {"settingssolo2.tar.gz", kModels},           {"settings_solo2-1.tar.gz", kModels},
    {"settings_solo._duo.tar.gz", {"solo"}},     {"settings_duo._solo.tar.gz", {"solo"}},
    {"settings_zero._duo2.tar.gz", {"duo2"}},    {"settings_solo_duo.tar.gz", {"duo"}},
};

TEST_F(RestoreList, ShowsATaggedNameOnlyOnTheModelOfItsFirstTagInTheFixedOrder) {
  for (const Box& box : kBoxes) {
    host.system.addDirectory(kDirectory, {box.name});
    Names models;
    for (const std::string& model : kModels) {
      host.model = model;
      openList("settingrestore");
      if (!list().flist.empty()) models.push_back(model);
    }
    EXPECT_EQ(models, box.models) << box.name;
  }
}

TEST_F(RestoreList, SortsInDescendingByteOrderWhateverTheListingsOrder) {
  host.system.addDirectory(kDirectory,
                           {"settings_b.tar.gz", "settings_\xff.tar.gz", "settings_a.tar.gz",
                            "settings.tar.gz", "settings_B.tar.gz"});
  openList("settingrestore");
  EXPECT_EQ(list().flist, (Names{"settings_\xff.tar.gz", "settings_b.tar.gz", "settings_a.tar.gz",
                                 "settings_B.tar.gz", "settings.tar.gz"}));
}

TEST_F(RestoreList, EmptyDirectoryListsNothingAndDisablesOkAndYellow) {
  openList("settingrestore");
  peer().press("ok");
  peer().press("green");
  peer().press("yellow");
  EXPECT_EQ(record.take(), "");
  EXPECT_FALSE(list().entry);
}

TEST_F(RestoreList, WithoutABackupDirectoryTheWidgetKeepsWhatItShowed) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  list().fill_list();
  EXPECT_EQ(record.take(), backupDirectory() + "HardwareInfoVu().get_device_name()\n");
  EXPECT_EQ(list().path, std::nullopt);
  EXPECT_EQ(list().flist, Names{});
  EXPECT_EQ(rows().rows, Names{"settings_1.tar.gz"});
}

TEST_F(RestoreList, EntryStaysOnceAListWasNotEmpty) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  host.system.addDirectory(kDirectory);
  list().fill_list();
  EXPECT_EQ(record.take(), listed({}));
  EXPECT_EQ(rows().rows, Names{});
  EXPECT_TRUE(list().entry);
}

TEST_F(RestoreList, RedAndCancelCloseItWithNoResult) {
  for (const char* key : {"red", "cancel"}) {
    SCOPED_TRACE(key);
    openList("settingrestore");
    peer().press(key);
    EXPECT_EQ(record.take(), "close()\n");
    EXPECT_TRUE(peer().closed->isNothing());
  }
}

TEST_F(RestoreList, ClosesWhateverAnswerItIsHanded) {
  openList("settingrestore");
  for (const host::Value& answer : {host::Value(), host::Value(true), host::Value("x")}) {
    list().keyCancel(answer);
    EXPECT_EQ(record.take(), "close()\n");
  }
  list().keyCancel();
  EXPECT_EQ(record.take(), "close()\n");
}

}  // namespace
}  // namespace stowline
