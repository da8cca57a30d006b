#include <gtest/gtest.h>

#include "command/preview/Plan.h"
#include "tests/support/Commands.h"

namespace preview_test {
namespace {

using preview::Plan;
using preview::planOf;
using Lines = std::vector<std::string>;

TEST(PlanTest, SettingsRestoreDeletesTheChannelFilesAndUnpacks) {
  const Plan plan = planOf(support::settingsRestoreCommands("/media/hdd/settings.tar.gz"));
  EXPECT_EQ(plan.deleted_first,
            Lines(std::begin(support::kChannelFiles), std::end(support::kChannelFiles)));
  EXPECT_EQ(plan.archives, Lines{"/media/hdd/settings.tar.gz"});
  EXPECT_EQ(plan.removed_again, Lines());
  EXPECT_EQ(plan.kept, Lines());
}

TEST(PlanTest, ConfigurationRestoreUnpacksTheCompanionsKeepsFilesAndRemovesTheBrowsersDirectory) {
  const Plan plan = planOf(support::configurationRestoreCommands({.archive = "/m/c.tar.gz",
                                                                  .keeps_system_files = true,
                                                                  .keeps_samba = true,
                                                                  .has_atile_hd = true,
                                                                  .has_user_files = true,
                                                                  .has_video_window = true}));
  EXPECT_EQ(plan.deleted_first, Lines());
  EXPECT_EQ(plan.archives,
            (Lines{"/m/c.tar.gz", "/m/c.tar.gz_atile_hd", "/m/c.tar.gz_user_files"}));
  EXPECT_EQ(plan.removed_again, Lines{"/.qws"});
  EXPECT_EQ(plan.kept, (Lines{"/etc/samba/smb.conf", "/etc/fstab", "/etc/passwd", "/etc/shadow"}));
}

TEST(PlanTest, OnlyPlainCommandsOfOneAbsolutePathDelete) {
  const Plan plan = planOf({"rm -f /a /b", "rm -f relative", "rm -f /a;true", "rm -f $HOME",
                            "rm -f /one", "tar xzf /x -C /", "rm -rf /two ; true", "rm -rf /two"});
  EXPECT_EQ(plan.deleted_first, Lines{"/one"});
  EXPECT_EQ(plan.removed_again, Lines{"/two"});
}

TEST(PlanTest, ArchiveWhoseNameTheShellTakesApartIsNotUnpacked) {
  for (const char* name :
       {"/m/a b", "/m/a;reboot", "/m/(1)", "/m/$a", "/m/a*", "/m/a'b", "/m/#a"}) {
    const Plan plan =
        planOf({"rm -f /one", "tar xzf " + std::string(name) + " -C /", "rm -rf /two"});
    EXPECT_EQ(plan.archives, Lines()) << name;
    EXPECT_EQ(plan.torn, Lines{name});
    EXPECT_EQ(plan.deleted_first, Lines{"/one"});
    EXPECT_EQ(plan.removed_again, Lines{"/two"});
  }
}

TEST(PlanTest, WhatIsRemovedBeforeALaterArchiveIsNotRemovedAgain) {
  const Plan plan = planOf({"rm -rf /before", "tar xzf /x -C /", "rm -rf /between",
                            "tar xzf /y -C /", "rm -rf /after", "rm -f /late"});
  EXPECT_EQ(plan.removed_again, Lines{"/after"});
  EXPECT_EQ(plan.deleted_first, Lines());
}

}  // namespace
}  // namespace preview_test
