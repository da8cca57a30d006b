#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {
namespace {

using namespace expected;

struct Housekeeping : ModuleTest {
  Housekeeping() {
    host.system.addDirectory(kDirectory);
    record.take();
  }

  void addFiles(const std::vector<std::string>& names) {
    for (const std::string& name : names) host.system.addFile(kDirectory + "/" + name);
  }

  Made actions{host.named("BackupActions")({"auto"_t})};
};

std::string skipped(const std::string& name) {
  return exists(kDirectory + "/" + name);
}

std::string removed(const std::string& name) {
  const std::string full = kDirectory + "/" + name;
  return exists(full) + "os.remove(" + quoted(full) + ")\n" +
         print("[Qor Stowline] Housekeeping --> remove file " + full);
}

const std::string kCollected = backupDirectory() + listdir(kDirectory);

TEST_F(Housekeeping, KeepsTheThreeNewestAndDeletesTheOthersNewestFirst) {
  addFiles(
      {"settings_20240303_07-04_solo2.auto.tar.gz", "settings_20240301_07-04_solo2.auto.tar.gz",
       "settings_20240305_07-04_solo2.auto.tar.gz", "settings_20240302_07-04_solo2.auto.tar.gz",
       "settings_20240304_07-04_solo2.auto.tar.gz"});
  actions.call("houseKeeping");
  EXPECT_EQ(record.take(), kCollected + removed("settings_20240302_07-04_solo2.auto.tar.gz") +
                               skipped("settings_20240302_07-04_solo2.auto.tar.gz_atile_hd") +
                               skipped("settings_20240302_07-04_solo2.auto.tar.gz_user_files") +
                               removed("settings_20240301_07-04_solo2.auto.tar.gz") +
                               skipped("settings_20240301_07-04_solo2.auto.tar.gz_atile_hd") +
                               skipped("settings_20240301_07-04_solo2.auto.tar.gz_user_files"));
}

TEST_F(Housekeeping, GoesThroughSettingsThenConfigurationsThenPluginLists) {
  for (const char* day : {"1", "2", "3", "4"}) {
    addFiles({"pluginlist_" + std::string(day) + "_solo2.auto.lst",
              "configuration_ver_c_" + std::string(day) + "_solo2.auto.tar.gz",
              "settings_" + std::string(day) + "_solo2.auto.tar.gz"});
  }
  actions.call("houseKeeping");
  EXPECT_EQ(record.take(), kCollected + removed("settings_1_solo2.auto.tar.gz") +
                               skipped("settings_1_solo2.auto.tar.gz_atile_hd") +
                               skipped("settings_1_solo2.auto.tar.gz_user_files") +
                               removed("configuration_ver_c_1_solo2.auto.tar.gz") +
                               skipped("configuration_ver_c_1_solo2.auto.tar.gz_atile_hd") +
                               skipped("configuration_ver_c_1_solo2.auto.tar.gz_user_files") +
                               removed("pluginlist_1_solo2.auto.lst") +
                               skipped("pluginlist_1_solo2.auto.lst_atile_hd") +
                               skipped("pluginlist_1_solo2.auto.lst_user_files"));
}

TEST_F(Housekeeping, DeletesCompanionsWithTheirArchiveAndNeverCountsThem) {
  for (const char* day : {"1", "2", "3", "4"}) {
    const std::string name = "configuration_ver_c_" + std::string(day) + "_solo2.auto.tar.gz";
    addFiles({name, name + "_user_files", name + "_atile_hd"});
  }
  actions.call("houseKeeping");
  EXPECT_EQ(record.take(), kCollected + removed("configuration_ver_c_1_solo2.auto.tar.gz") +
                               removed("configuration_ver_c_1_solo2.auto.tar.gz_atile_hd") +
                               removed("configuration_ver_c_1_solo2.auto.tar.gz_user_files"));
}

TEST_F(Housekeeping, NeverDeletesAnOrphanedCompanion) {
  for (const char* day : {"1", "2", "3", "4", "5"}) {
    const std::string name = "configuration_ver_c_" + std::string(day) + "_solo2.auto.tar.gz";
    addFiles({name + "_user_files", name + "_atile_hd"});
  }
  actions.call("houseKeeping");
  EXPECT_EQ(record.take(), kCollected);
}

TEST_F(Housekeeping, OrdersConfigurationsByTheirVersionTagBeforeTheirDate) {
  addFiles({"configuration_ver_b_20250101_00-00_solo2.auto.tar.gz",
            "configuration_ver_c_20240101_00-00_solo2.auto.tar.gz",
            "configuration_ver_c_20240102_00-00_solo2.auto.tar.gz",
            "configuration_ver_c_20240103_00-00_solo2.auto.tar.gz"});
  actions.call("houseKeeping");
  EXPECT_EQ(record.take(),
            kCollected + removed("configuration_ver_b_20250101_00-00_solo2.auto.tar.gz") +
                skipped("configuration_ver_b_20250101_00-00_solo2.auto.tar.gz_atile_hd") +
                skipped("configuration_ver_b_20250101_00-00_solo2.auto.tar.gz_user_files"));
}

/// Names that sort below three scheduled settings archives, configurations and plugin lists: such a
/// name is deleted when it is collected as a main file.
struct Candidate {
  const char* name;
  bool is_collected;
};

constexpr Candidate kCandidates[] = {
    {"settings_0_solo2.auto.tar.gz", true},    {"settings_0_solo2.tar.gz", false},
    {"settings_0_duo2.auto.tar.gz", false},    {"settings_0_solo.auto.tar.gz", false},
    {"settings_0_solo2.auto.lst", false},      {"settings_0_solo2.auto.tar.gz.old", false},
    {"Settings_0_solo2.auto.tar.gz", false},   {"configuration_0_solo2.auto.tar.gz", true},
    {"configuration_0_solo2.tar.gz", false},   {"configuration_0_duo2.auto.tar.gz", false},
    {"configuration_0_solo2.auto.lst", false}, {"pluginlist_0_solo2.auto.lst", true},
    {"pluginlist_0_solo2.lst", false},         {"pluginlist_0_duo2.auto.lst", false},
    {"pluginlist_0_solo2.auto.tar.gz", false}, {"my_settings_0_solo2.auto.tar.gz", false},
};

TEST_F(Housekeeping, CollectsOnlyScheduledBackupsOfThisModel) {
  for (const char* day : {"1", "2", "3"}) {
    addFiles({"settings_" + std::string(day) + "_solo2.auto.tar.gz",
              "configuration_" + std::string(day) + "_solo2.auto.tar.gz",
              "pluginlist_" + std::string(day) + "_solo2.auto.lst"});
  }
  for (const Candidate& candidate : kCandidates) {
    SCOPED_TRACE(candidate.name);
    addFiles({candidate.name});
    actions.call("houseKeeping");
    const std::string companions = skipped(candidate.name + std::string("_atile_hd")) +
                                   skipped(candidate.name + std::string("_user_files"));
    EXPECT_EQ(record.take(), candidate.is_collected
                                 ? kCollected + removed(candidate.name) + companions
                                 : kCollected);
    host.system.dropFile(kDirectory + "/" + candidate.name);
  }
}

TEST_F(Housekeeping, UsesTheModelOfTheObjectWhateverItsType) {
  const Made other(host.named("BackupActions")({"manual"_t}));
  other.set("boxtype", "duo2"_t);
  record.take();
  addFiles({"settings_1_duo2.auto.tar.gz", "settings_2_duo2.auto.tar.gz",
            "settings_3_duo2.auto.tar.gz", "settings_4_duo2.auto.tar.gz",
            "settings_5_solo2.auto.tar.gz"});
  other.call("houseKeeping");
  EXPECT_EQ(record.take(), kCollected + removed("settings_1_duo2.auto.tar.gz") +
                               skipped("settings_1_duo2.auto.tar.gz_atile_hd") +
                               skipped("settings_1_duo2.auto.tar.gz_user_files"));
}

}  // namespace
}  // namespace stowline
