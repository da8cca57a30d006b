#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

using Names = std::vector<std::string>;
using RestoreList = RestoreListTest;

TEST_F(RestoreList, IsBuiltAndFilledInItsConstructor) {
  addFile("settings_20240304_07-04_solo2.tar.gz");
  addFile("settings_20240305_07-04_solo2.tar.gz");
  const Opened list(*this, "StowlineRestore", "settingrestore"_t, "/plugin"_t);
  EXPECT_EQ(record.take(), restoreListBegun("/plugin") +
                               listed({"settings_20240305_07-04_solo2.tar.gz",
                                       "settings_20240304_07-04_solo2.tar.gz"}) +
                               restoreListEnded());
}

TEST_F(RestoreList, StartsWithItsDocumentedState) {
  openList("configrestore");
  EXPECT_EQ(list().attribute("skin_path"), "\"/plugin\"");
  EXPECT_EQ(list().attribute("restoretype"), "\"configrestore\"");
  EXPECT_EQ(list().attribute("title"), "\"QOR Stowline\"");
  EXPECT_TRUE(list().object().get("session"_t) == host.session());
  EXPECT_EQ(list().attribute("sel"), "[]");
  EXPECT_EQ(list().attribute("val"), "[]");
  EXPECT_EQ(list().attribute("entry"), "False");
  EXPECT_EQ(list().attribute("exe"), "False");
  EXPECT_EQ(list().attribute("path"), quoted(kDirectory));
  EXPECT_EQ(list().attribute("flist"), "[]");
  EXPECT_EQ(list().attribute("cmdList"), "[]");
  EXPECT_EQ(list().attribute("Console"), "<console>");
  EXPECT_EQ(list().attribute("ipkg"), "<IpkgComponent>");
}

TEST_F(RestoreList, TranslatesItsTexts) {
  host.translations = {{"QOR Stowline", "Sicherung"},
                       {"Close", "Zu"},
                       {"Install", "Holen"},
                       {"Delete", "Weg"},
                       {"Start", "Los"}};
  openList("settingrestore");
  EXPECT_EQ(list().text("title"), "Sicherung");
  EXPECT_EQ(list().text("key_red"), "Zu");
  EXPECT_EQ(list().text("key_green"), "Holen");
  EXPECT_EQ(list().text("key_yellow"), "Weg");
  addFile("backup.sh");
  openList("personalscript");
  EXPECT_EQ(list().text("key_green"), "Los");
}

TEST_F(RestoreList, GreenLabelIsInstallForEveryTypeButListedScripts) {
  for (const char* name : {"settings_1.tar.gz", "configuration_1.tar.gz", "pluginlist_1.lst"}) {
    addFile(name);
  }
  for (const char* type : {"settingrestore", "configrestore", "plugininstall", "personalscript"}) {
    SCOPED_TRACE(type);
    openList(type);
    EXPECT_EQ(list().text("key_green"), "Install");
  }
}

TEST_F(RestoreList, EachListedScriptSetsTheGreenLabelToStartAnew) {
  addFile("restore_a.sh");
  addFile("other.sh");
  addFile("backup_b.sh");
  const Opened list(*this, "StowlineRestore", "personalscript"_t, "/plugin"_t);
  EXPECT_EQ(record.take(), restoreListBegun("/plugin") + backupDirectory() +
                               "HardwareInfoVu().get_device_name()\n" + listdir(kDirectory) +
                               label("key_green", "Start") + label("key_green", "Start") +
                               "self[\"filelist\"].l.setList([\"restore_a.sh\", "
                               "\"backup_b.sh\"])\n" +
                               restoreListEnded());
  EXPECT_EQ(list.text("key_green"), "Start");
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
      EXPECT_EQ(list().attribute("flist"), is_listed ? "[" + quoted(kind.name) + "]" : "[]");
      EXPECT_EQ(described(rows().rows), list().attribute("flist"));
      EXPECT_EQ(list().attribute("entry"), is_listed ? "True" : "False");
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
      if (list().attribute("flist") != "[]") models.push_back(model);
    }
    EXPECT_EQ(models, box.models) << box.name;
  }
}

TEST_F(RestoreList, SortsInDescendingByteOrderWhateverTheListingsOrder) {
  host.system.addDirectory(kDirectory,
                           {"settings_b.tar.gz", "settings_\xff.tar.gz", "settings_a.tar.gz",
                            "settings.tar.gz", "settings_B.tar.gz"});
  openList("settingrestore");
  EXPECT_EQ(list().attribute("flist"),
            "[\"settings_\xff.tar.gz\", \"settings_b.tar.gz\", \"settings_a.tar.gz\", "
            "\"settings_B.tar.gz\", \"settings.tar.gz\"]");
}

TEST_F(RestoreList, EmptyDirectoryListsNothingAndDisablesOkAndYellow) {
  openList("settingrestore");
  list().press("ok");
  list().press("green");
  list().press("yellow");
  EXPECT_EQ(record.take(), "");
  EXPECT_EQ(list().attribute("entry"), "False");
}

TEST_F(RestoreList, WithoutABackupDirectoryTheWidgetKeepsWhatItShowed) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  journal.failOn("os_path.exists(\"/media/hdd/qor-stowline\")", {"OSError", "gone", 5});
  list().call("fill_list");
  EXPECT_EQ(record.take(), backupDirectory() + "HardwareInfoVu().get_device_name()\n");
  EXPECT_EQ(list().attribute("path"), "None");
  EXPECT_EQ(list().attribute("flist"), "[]");
  EXPECT_EQ(described(rows().rows), "[\"settings_1.tar.gz\"]");
}

TEST_F(RestoreList, EntryStaysOnceAListWasNotEmpty) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  host.system.addDirectory(kDirectory);
  list().call("fill_list");
  EXPECT_EQ(record.take(), listed({}));
  EXPECT_EQ(described(rows().rows), "[]");
  EXPECT_EQ(list().attribute("entry"), "True");
}

TEST_F(RestoreList, RedAndCancelCloseItWithNoResult) {
  for (const char* key : {"red", "cancel"}) {
    SCOPED_TRACE(key);
    openList("settingrestore");
    list().press(key);
    EXPECT_EQ(record.take(), "close()\n");
    EXPECT_EQ(list().result(), "None");
  }
}

TEST_F(RestoreList, ClosesWhateverAnswerItIsHanded) {
  openList("settingrestore");
  for (const Object& answer : {Object(), Object(true), Object("x"_t)}) {
    list().call("keyCancel", {answer});
    EXPECT_EQ(record.take(), "close()\n");
  }
  list().call("keyCancel");
  EXPECT_EQ(record.take(), "close()\n");
}

}  // namespace
}  // namespace stowline
