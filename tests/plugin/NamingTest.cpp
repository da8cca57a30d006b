#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

struct Naming : ModuleTest {
  Made make(const Object& backuptype) { return Made(host.named("BackupActions")({backuptype})); }
};

struct Stamp {
  plain::LocalTime now;
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
    EXPECT_EQ(described(host.named("getDateTime")()), quoted(stamp.text));
    EXPECT_EQ(record.take(), "localtime()\n");
  }
}

struct Name {
  const char* backuptype;  ///< null for none
  const char* model;
  const char* executiontime;
};

constexpr Name kNames[] = {
    {"manual", "solo2", "20240305_07-04_solo2"},  {"auto", "solo2", "20240305_07-04_solo2.auto"},
    {"auto", "uno", "20240305_07-04_uno.auto"},   {"Auto", "duo2", "20240305_07-04_duo2"},
    {"automatic", "duo2", "20240305_07-04_duo2"}, {"", "zero", "20240305_07-04_zero"},
    {nullptr, "zero", "20240305_07-04_zero"},
};

TEST_F(Naming, ExecutionTimeHoldsTheModelAndMarksExactlyAutoAsScheduled) {
  for (const Name& name : kNames) {
    const Object type = name.backuptype ? Object(std::string(name.backuptype)) : Object();
    SCOPED_TRACE(described(type));
    host.model = name.model;
    const Made actions = make(type);
    EXPECT_EQ(actions.str("executiontime"), name.executiontime);
    EXPECT_EQ(actions.str("boxtype"), name.model);
    EXPECT_EQ(record.take(), "localtime()\nHardwareInfoVu().get_device_name()\n");
  }
}

TEST_F(Naming, BackupTypeMayBeLeftOut) {
  EXPECT_EQ(Made(host.named("BackupActions")()).str("executiontime"), expected::kStamp);
}

TEST_F(Naming, EveryFileOfAScheduledRunCarriesItsMarkerBeforeTheEnding) {
  const Made actions = make("auto"_t);
  actions.call("createSettingFile");
  actions.call("createConfigFile");
  actions.call("createPluginList");
  const std::string stamp = expected::kStamp + ".auto";
  EXPECT_EQ(actions.str("settingfile"), expected::kDirectory + "/settings_" + stamp + ".tar.gz");
  EXPECT_EQ(actions.str("configfile"),
            expected::kDirectory + "/configuration_ver_c_" + stamp + ".tar.gz");
  EXPECT_EQ(actions.str("pluginfile"), expected::kDirectory + "/pluginlist_" + stamp + ".lst");
}

TEST_F(Naming, StampStaysThatOfTheObjectsCreation) {
  const Made actions = make("manual"_t);
  host.system.now.tm_min = 5;
  host.model = "duo2";
  actions.call("createSettingFile");
  EXPECT_EQ(actions.str("settingfile"),
            expected::kDirectory + "/settings_20240305_07-04_solo2.tar.gz");
}

TEST_F(Naming, EveryJobAsksForTheBackupDirectoryAfresh) {
  const Made actions = make("manual"_t);
  actions.call("createSettingFile");
  EXPECT_EQ(actions.str("path"), "/media/hdd/qor-stowline");
  setMedium("/media/usb");
  actions.call("createConfigFile");
  EXPECT_EQ(actions.str("path"), "/media/usb/qor-stowline");
  setMedium("/media/net/share");
  actions.call("createPluginList");
  EXPECT_EQ(actions.str("path"), "/media/net/share/qor-stowline");
}

}  // namespace
}  // namespace stowline
