#include <gtest/gtest.h>
#include <sys/stat.h>

#include "command/preview/Rehearsal.h"
#include "tests/command/preview/Told.h"
#include "tests/support/Commands.h"

namespace preview_test {
namespace {

/// A receiver with a backup directory.
struct RehearsalTest : testing::Test {
  RehearsalTest() {
    files.makeReceiver();
    files.makeDirectory("/etc/samba");
  }

  /// Returns what a restore of a new backup of this name does.
  preview::Rehearsal restored(const std::string& name) const {
    files.write(kBackups + name, std::string(10000, 'x'));
    return preview::rehearse(files.at(kBackups + name), files.path());
  }

  Files files;
};

TEST_F(RehearsalTest, SettingsRestoreDeletesTheChannelFilesAndUnpacks) {
  const preview::Plan plan = restored("settings_1.tar.gz").plan;
  EXPECT_EQ(plan.deleted_first,
            Lines(std::begin(support::kChannelFiles), std::end(support::kChannelFiles)));
  EXPECT_EQ(plan.archives, Lines{kBackups + "settings_1.tar.gz"});
  EXPECT_EQ(plan.removed_again, Lines());
  EXPECT_EQ(plan.kept, Lines());
}

const Lines kAll = {"/etc/samba/smb.conf", "/etc/fstab", "/etc/passwd", "/etc/shadow"};

/// A configuration archive and what a restore of it keeps.
const std::pair<std::string, Lines> kConfigurations[] = {
    {"configuration_1.tar.gz", kAll},
    {"configuration_ver_a_1.tar.gz", kAll},
    {"configuration_ver_b_1.tar.gz", {"/etc/samba/smb.conf"}},
    {"configuration_ver_c_1.tar.gz", {}},
};

TEST_F(RehearsalTest, ConfigurationRestoreUnpacksTheCompanionsKeepsFilesAndRemovesADirectory) {
  files.write("/etc/samba/smb.conf", "");
  for (const auto& [name, kept] : kConfigurations) {
    const std::string archive = kBackups + name;
    Lines archives = {archive};
    EXPECT_EQ(restored(name).plan.archives, archives);
    for (const char* ending : {"_atile_hd", "_user_files"}) {
      archives.push_back(archive + ending);
      files.write(archives.back(), "");
      EXPECT_EQ(restored(name).plan.archives, archives);
    }
    const preview::Plan plan = restored(name).plan;
    EXPECT_EQ(plan.deleted_first, Lines());
    EXPECT_EQ(plan.removed_again, Lines{"/.qws"});
    EXPECT_EQ(plan.kept, kept);
  }
}

TEST_F(RehearsalTest, SambasConfigurationIsNotKeptWhereThereIsNone) {
  EXPECT_EQ(restored("configuration_ver_b_1.tar.gz").plan.kept, Lines());
}

TEST_F(RehearsalTest, SettingsThatAreNoFileAreNotWaitedFor) {
  files.makeDirectory("/etc/enigma2");
  ASSERT_EQ(mkfifo(files.at("/etc/enigma2/settings").c_str(), 0600), 0);
  EXPECT_EQ(restored("settings_1.tar.gz").refusal, "");
}

TEST_F(RehearsalTest, ArchiveWhoseNameTheShellTakesApartIsNotUnpacked) {
  for (const char* name : {"a b", "a;reboot", "(1)", "$a", "a*", "a'b", "#a", "a\nb"}) {
    for (const char* kind : {"settings_", "configuration_"}) {
      const std::string archive = std::string(kind) + name + ".tar.gz";
      const preview::Plan plan = restored(archive).plan;
      EXPECT_EQ(plan.archives, Lines()) << name;
      EXPECT_EQ(plan.torn, Lines{kBackups + archive});
    }
  }
}

}  // namespace
}  // namespace preview_test
