#include "plugin/src/StowlineRestore.h"
#include "tests/plugin/MenuTest.h"

namespace stowline {
namespace {

using namespace expected;

using MenuActions = MenuTest;

TEST_F(MenuActions, OpenedRestoreListIsMadeOfTheSameArguments) {
  openMenu("restore");
  select("installpluginlist");
  menu().runMenuEntry();
  RecordingPeer list_peer(journal);
  const auto screen = std::get<host::ScreenClass>(session.lastOpened()).create(list_peer, session);
  const auto& list = dynamic_cast<const StowlineRestore&>(*screen);
  EXPECT_EQ(list.restoretype, "plugininstall");
  EXPECT_EQ(list.skin_path, "/plugin");
}

TEST_F(MenuActions, AnyOtherKeyDoesNothing) {
  openMenu("backup");
  for (const host::Value& key : {host::Value(""), host::Value("Path"), host::Value("plugininstall"),
                                 host::Value("backup"), host::Value(), host::Value(1)}) {
    SCOPED_TRACE(described(key));
    select(key);
    peer().press("ok");
    EXPECT_EQ(record.take(), kSelected);
    EXPECT_EQ(menu().restoretype, "");
  }
}

TEST_F(MenuActions, NoRowUnderTheCursorDoesNothing) {
  openMenu("backup");
  rows().entries.clear();
  peer().press("ok");
  EXPECT_EQ(record.take(), kSelected);
}

TEST_F(MenuActions, TheOptionalArgumentHasNoEffect) {
  openMenu("restore");
  select("installlocalplugin");
  for (const host::Value& argument :
       {host::Value(), host::Value(true), host::Value(false), host::Value("path")}) {
    menu().runMenuEntry(argument);
    EXPECT_EQ(record.take(), kSelected + "ipkg.startCmd(CMD_UPDATE)\n");
  }
}

/// Backup jobs that say which of them was run and return what they are told to.
struct StatedJobs : BackupJobs {
  StatedJobs(Journal& journal, host::Value result) : journal(journal), result(std::move(result)) {}
  host::Value createSettingFile() override { return run("createSettingFile()"); }
  host::Value createConfigFile() override { return run("createConfigFile()"); }
  host::Value createPluginList() override { return run("createPluginList()"); }

  host::Value run(const std::string& name) {
    journal.note(name);
    return result;
  }

  Journal& journal;
  host::Value result;
};

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
  host::Value value;
  bool is_success;
};

const JobResult kResults[] = {
    {true, true},
    {1, true},
    {1.0, true},
    {false, false},
    {host::Value(), false},
    {0, false},
    {2, false},
    {-1, false},
    {"", false},
    {"True", false},
    {host::Value::List{}, false},
    {host::Value::List{true}, false},
    {host::Value(host::ObjectRef(std::make_shared<RecordingObject>("<object>"))), false},
};

TEST_F(MenuActions, BackupJobsReportByWhetherTheirResultEqualsTrue) {
  openMenu("backup");
  for (const Job& job : kJobs) {
    for (const JobResult& result : kResults) {
      SCOPED_TRACE(job.key + (": " + described(result.value)));
      menu().backupactions = std::make_unique<StatedJobs>(journal, result.value);
      select(job.key);
      peer().press("ok");
      EXPECT_EQ(record.take(), kSelected + job.operation +
                                   (result.is_success ? box(job.success, "TYPE_INFO")
                                                      : box(job.failure, "TYPE_ERROR")) +
                                   setDialogTitle());
      EXPECT_FALSE(menu().reloadPluginlist);
      EXPECT_EQ(menu().restoretype, "");
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
  select("createpluginlist");
  peer().press("ok");
  EXPECT_EQ(record.take(), kSelected + backupDirectory() + fileExists(list) +
                               system(pluginListCommand(list)) + fileExists(list) + success);
  host.system.now.tm_min += 1;
  peer().press("ok");
  EXPECT_EQ(record.take(), kSelected + backupDirectory() + fileExists(list) +
                               system("rm -f " + list) + system(pluginListCommand(list)) +
                               fileExists(list) + success);
  EXPECT_FALSE(menu().reloadPluginlist);
}

TEST_F(MenuActions, ReportsAreTranslatedAndSoIsTheirTitle) {
  host.translations = {{"Backup settings failed", "Fehlgeschlagen"}, {"QOR Stowline", "Sicherung"}};
  openMenu("backup");
  menu().backupactions = std::make_unique<StatedJobs>(journal, false);
  select("settingbackup");
  peer().press("ok");
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
