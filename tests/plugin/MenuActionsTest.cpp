#include "tests/plugin/MenuTest.h"

namespace stowline {
namespace {

using namespace expected;

struct MenuActions : MenuTest {
  /// Makes backup jobs that say which of them was run and return `result`.
  Object statedJobs(const Object& result) {
    const auto job = [&](const std::string& name) {
      return plain::function([this, name, result](host::Arguments) {
        journal.note(name + "()");
        return result;
      });
    };
    return plain::instance("BackupActions", {{"createSettingFile", job("createSettingFile")},
                                             {"createConfigFile", job("createConfigFile")},
                                             {"createPluginList", job("createPluginList")}});
  }
};

TEST_F(MenuActions, OpenedRestoreListIsMadeOfTheSameArguments) {
  openMenu("restore");
  select("installpluginlist"_t);
  menu().call("runMenuEntry");
  const Opened list(*this, host.opened.back());
  EXPECT_EQ(list.attribute("restoretype"), "\"plugininstall\"");
  EXPECT_EQ(list.attribute("skin_path"), "\"/plugin\"");
}

TEST_F(MenuActions, AnyOtherKeyDoesNothing) {
  openMenu("backup");
  for (const Object& key : {Object(""_t), Object("Path"_t), Object("plugininstall"_t),
                            Object("backup"_t), Object(), Object(1)}) {
    SCOPED_TRACE(described(key));
    select(key);
    menu().press("ok");
    EXPECT_EQ(record.take(), kSelected);
    EXPECT_EQ(menu().attribute("restoretype"), "missing");
  }
}

TEST_F(MenuActions, NoRowUnderTheCursorDoesNothing) {
  openMenu("backup");
  rows() = host::list();
  menu().press("ok");
  EXPECT_EQ(record.take(), kSelected);
}

TEST_F(MenuActions, TheOptionalArgumentHasNoEffect) {
  openMenu("restore");
  select("installlocalplugin"_t);
  for (const Object& argument : {Object(), Object(true), Object(false), Object("path"_t)}) {
    menu().call("runMenuEntry", {argument});
    EXPECT_EQ(record.take(), kSelected + "ipkg.startCmd(CMD_UPDATE)\n");
  }
}

struct Job {
  const char* key;
  const char* operation;
  const char* success;
  const char* failure;
};

constexpr Job kJobs[] = {
    {"createpluginlist", "createPluginList()\n",
     "List of installed plugins was created succesfully",
     "Creating list of installed plugins failed"},
    {"settingbackup", "createSettingFile()\n", "Settings backup finished succesfully",
     "Backup settings failed"},
    {"configbackup", "createConfigFile()\n", "Common configuration backup finished succesfully",
     "Backup of common configurations failed"},
};

struct JobResult {
  Object value;
  bool is_success;
};

const JobResult kResults[] = {
    {true, true},
    {1, true},
    {false, false},
    {Object(), false},
    {0, false},
    {2, false},
    {-1, false},
    {""_t, false},
    {"True"_t, false},
    {host::list(), false},
    {host::list({true}), false},
    {plain::make<NamedObject>("<object>"), false},
};

TEST_F(MenuActions, BackupJobsReportByWhetherTheirResultEqualsTrue) {
  openMenu("backup");
  for (const Job& job : kJobs) {
    for (const JobResult& result : kResults) {
      SCOPED_TRACE(job.key + (": " + described(result.value)));
      menu().set("backupactions", statedJobs(result.value));
      select(std::string(job.key));
      menu().press("ok");
      EXPECT_EQ(record.take(), kSelected + job.operation +
                                   (result.is_success ? box(job.success, "TYPE_INFO")
                                                      : box(job.failure, "TYPE_ERROR")) +
                                   setDialogTitle());
      EXPECT_EQ(menu().attribute("reloadPluginlist"), "False");
      EXPECT_EQ(menu().attribute("restoretype"), "missing");
    }
  }
}

TEST_F(MenuActions, SecondBackupOfTheSameMenuReplacesTheFirst) {
  openMenu("backup");
  host.system.addDirectory(kDirectory);
  const std::string list = kDirectory + "/pluginlist_" + kStamp + ".lst";
  host.system.shell = [&](const std::string& command) {
    if (command.starts_with("opkg")) host.system.addFile(list);
    return 0;
  };
  const std::string success =
      box("List of installed plugins was created succesfully", "TYPE_INFO") + setDialogTitle();
  select("createpluginlist"_t);
  menu().press("ok");
  EXPECT_EQ(record.take(), kSelected + backupDirectory() + fileExists(list) +
                               system(pluginListCommand(list)) + fileExists(list) + success);
  host.system.now.tm_min += 1;
  menu().press("ok");
  EXPECT_EQ(record.take(), kSelected + backupDirectory() + fileExists(list) +
                               system("rm -f " + list) + system(pluginListCommand(list)) +
                               fileExists(list) + success);
  EXPECT_EQ(menu().attribute("reloadPluginlist"), "False");
}

TEST_F(MenuActions, ReportsAreTranslatedAndSoIsTheirTitle) {
  host.translations = {{"Backup settings failed", "Fehlgeschlagen"}, {"QOR Stowline", "Sicherung"}};
  openMenu("backup");
  menu().set("backupactions", statedJobs(false));
  select("settingbackup"_t);
  menu().press("ok");
  EXPECT_EQ(record.take(), kSelected + block(R"(
createSettingFile()
_("Backup settings failed")
session.open(MessageBox, "Fehlgeschlagen", TYPE_ERROR, timeout=10)
_("QOR Stowline")
dialog.setTitle("Sicherung")
)"));
}

}  // namespace
}  // namespace stowline
