#include "plugin/src/BackupActions.h"
#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

using Naming = ModuleTest;

struct Stamp {
  host::LocalTime now;
  const char* text;
};

constexpr Stamp kStamps[] = {
    {{2024, 3, 5, 7, 4}, "20240305_07-04"},   {{2024, 11, 12, 10, 10}, "20241112_10-10"},
    {{2024, 3, 1, 9, 5}, "20240301_09-05"},   {{2024, 9, 9, 9, 9}, "20240909_09-09"},
    {{2024, 10, 10, 0, 0}, "20241010_00-00"}, {{1999, 12, 31, 23, 59}, "19991231_23-59"},
    {{476, 1, 1, 1, 1}, "4760101_01-01"},
};

TEST_F(Naming, TimeStampPutsAZeroBeforeValuesBelowTenButNotBeforeTheYear) {
  for (const Stamp& stamp : kStamps) {
    host.system.now = stamp.now;
    EXPECT_EQ(getDateTime(host), stamp.text);
    EXPECT_EQ(record.take(), "localtime()\n");
  }
}

struct Name {
  std::optional<std::string_view> backuptype;
  const char* model;
  const char* executiontime;
};

constexpr Name kNames[] = {
    {"manual", "solo2", "20240305_07-04_solo2"},   {"auto", "solo2", "20240305_07-04_solo2.auto"},
    {"auto", "uno", "20240305_07-04_uno.auto"},    {"Auto", "duo2", "20240305_07-04_duo2"},
    {"automatic", "duo2", "20240305_07-04_duo2"},  {"", "zero", "20240305_07-04_zero"},
    {std::nullopt, "zero", "20240305_07-04_zero"},
};

TEST_F(Naming, ExecutionTimeHoldsTheModelAndMarksExactlyAutoAsScheduled) {
  for (const Name& name : kNames) {
    SCOPED_TRACE(name.backuptype.value_or("no type"));
    host.model = name.model;
    const BackupActions actions(host, name.backuptype);
    EXPECT_EQ(actions.executiontime, name.executiontime);
    EXPECT_EQ(actions.boxtype, name.model);
    EXPECT_EQ(record.take(), "localtime()\nHardwareInfoVu().get_device_name()\n");
  }
}

TEST_F(Naming, BackupTypeMayBeLeftOut) {
  EXPECT_EQ(BackupActions(host).executiontime, expected::kStamp);
}

TEST_F(Naming, EveryFileOfAScheduledRunCarriesItsMarkerBeforeTheEnding) {
  BackupActions actions(host, "auto");
  actions.createSettingFile();
  actions.createConfigFile();
  actions.createPluginList();
  const std::string stamp = expected::kStamp + ".auto";
  EXPECT_EQ(actions.settingfile, expected::kDirectory + "/settings_" + stamp + ".tar.gz");
  EXPECT_EQ(actions.configfile, expected::kDirectory + "/configuration_ver_c_" + stamp + ".tar.gz");
  EXPECT_EQ(actions.pluginfile, expected::kDirectory + "/pluginlist_" + stamp + ".lst");
}

TEST_F(Naming, StampStaysThatOfTheObjectsCreation) {
  BackupActions actions(host, "manual");
  host.system.now.tm_min = 5;
  host.model = "duo2";
  actions.createSettingFile();
  EXPECT_EQ(actions.settingfile, expected::kDirectory + "/settings_20240305_07-04_solo2.tar.gz");
}

TEST_F(Naming, EveryJobAsksForTheBackupDirectoryAfresh) {
  BackupActions actions(host, "manual");
  actions.createSettingFile();
  EXPECT_EQ(actions.path, "/media/hdd/qor-stowline");
  setMedium("/media/usb");
  actions.createConfigFile();
  EXPECT_EQ(actions.path, "/media/usb/qor-stowline");
  setMedium("/media/net/share");
  actions.createPluginList();
  EXPECT_EQ(actions.path, "/media/net/share/qor-stowline");
}

}  // namespace
}  // namespace stowline
