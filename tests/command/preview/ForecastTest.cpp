#include <gtest/gtest.h>

#include "command/preview/Forecast.h"
#include "tests/command/preview/Told.h"
#include "tests/support/archive/TarWriter.h"

namespace preview_test {
namespace {

using archive_test::member;
using preview::Plan;

struct ForecastTest : testing::Test {
  ForecastTest() { files.makeDirectory("/etc"); }

  Lines told(const std::vector<std::string>& members, const Plan& plan = {}) const {
    return files.told(plan, {tarOf(members)});
  }

  Files files;
};

TEST_F(ForecastTest, MemberIsAddedChangedOrTheSame) {
  const std::string large(300000, 'x');
  files.write("/etc/same", "content");
  files.write("/etc/large", large);
  files.write("/etc/other", "CONTENT");
  files.write("/etc/end", large.substr(1) + "y");
  files.write("/etc/longer", "content and more");
  files.write("/etc/mode", "content", 0755);
  files.write("/etc/empty", "");
  EXPECT_EQ(told({member({.name = "etc/new"}, "content"), member({.name = "etc/same"}, "content"),
                  member({.name = "etc/large"}, large), member({.name = "etc/other"}, "content"),
                  member({.name = "etc/end"}, large), member({.name = "etc/longer"}, "content"),
                  member({.name = "etc/mode"}, "content"), member({.name = "etc/empty"})}),
            (Lines{
                "add /etc/new: nothing -> 7",
                "same /etc/same: 7 -> 7",
                "same /etc/large: 300000 -> 300000",
                "change /etc/other: 7 -> 7",
                "change /etc/end: 300000 -> 300000",
                "change /etc/longer: 16 -> 7",
                "change /etc/mode: 7 -> 7, 755 -> 644",
                "same /etc/empty: 0 -> 0",
            }));
}

TEST_F(ForecastTest, LinksAreComparedByTheirTargetsAndNeverFollowed) {
  files.write("/etc/target", "content");
  files.makeLink("/etc/same", "target");
  files.makeLink("/etc/other", "elsewhere");
  files.makeLink("/etc/file", "target");
  EXPECT_EQ(told({member({.name = "etc/same", .type = '2', .link = "target"}),
                  member({.name = "etc/other", .type = '2', .link = "target"}),
                  member({.name = "etc/target", .type = '2', .link = "same"}),
                  member({.name = "etc/file"}, "content")}),
            (Lines{
                "same /etc/same: link target -> link target",
                "change /etc/other: link elsewhere -> link target",
                "change /etc/target: 7 -> link same",
                "change /etc/file: link target -> 7",
            }));
}

TEST_F(ForecastTest, HardLinkIsTheSameOnlyWhereItIsOneAndItsFileStays) {
  files.write("/etc/first", "content");
  files.makeHardLink("/etc/second", "/etc/first");
  files.write("/etc/copy", "content");
  const auto links = [&](const std::string& content) {
    return told({member({.name = "etc/first"}, content),
                 member({.name = "etc/second", .type = '1', .link = "etc/first"}),
                 member({.name = "etc/copy", .type = '1', .link = "etc/first"})});
  };
  EXPECT_EQ(links("content"), (Lines{
                                  "same /etc/first: 7 -> 7",
                                  "same /etc/second: 7 -> hard link etc/first",
                                  "change /etc/copy: 7 -> hard link etc/first",
                              }));
  EXPECT_EQ(links("CONTENT"), (Lines{
                                  "change /etc/first: 7 -> 7",
                                  "change /etc/second: 7 -> hard link etc/first",
                                  "change /etc/copy: 7 -> hard link etc/first",
                              }));
}

TEST_F(ForecastTest, DirectoryIsTheSameWithItsPermissions) {
  files.makeDirectory("/etc/mode");
  EXPECT_EQ(told({member({.name = "etc/", .type = '5', .mode = 0755}),
                  member({.name = "etc/mode/", .type = '5', .mode = 0700}),
                  member({.name = "etc/new/", .type = '5', .mode = 0755})}),
            (Lines{
                "same /etc: directory -> directory",
                "change /etc/mode: directory -> directory, 755 -> 700",
                "add /etc/new: nothing -> directory",
            }));
}

TEST_F(ForecastTest, DirectoryBlocksWhatIsNoneAndTheOtherWayRound) {
  files.makeDirectory("/etc/empty");
  files.makeDirectory("/etc/full");
  files.write("/etc/full/file", "");
  files.write("/etc/file", "");
  files.makeLink("/etc/link", "nowhere");
  EXPECT_EQ(told({member({.name = "etc/empty"}, "content"), member({.name = "etc/full"}, "content"),
                  member({.name = "etc/file/", .type = '5', .mode = 0755}),
                  member({.name = "etc/file/below"}, "content"),
                  member({.name = "etc/link/far/below"}, "content")}),
            (Lines{
                "blocked /etc/empty: directory -> directory",
                "blocked /etc/full: directory -> directory",
                "blocked /etc/file: 0 -> 0",
                "blocked /etc/file/below: nothing -> nothing",
                "blocked /etc/link/far/below: nothing -> nothing",
            }));
}

TEST_F(ForecastTest, ChangesAreToldWhereTheReceiversLinksLead) {
  files.makeDirectory("/etc");
  files.makeDirectory("/media");
  files.write("/media/smb.conf", "content");
  files.write("/media/a.tv", "");
  files.makeLink("/etc/samba", "../media");
  files.makeLink("/.qws", "/media");
  EXPECT_EQ(told({member({.name = "etc/samba/smb.conf"}, "new"),
                  member({.name = "etc/samba/new/file"}, "1"), member({.name = ".qws/file"}, "12"),
                  member({.name = "media/link", .type = '1', .link = "etc/samba/new/file"})},
                 {.deleted_first = {"/etc/samba/*.tv"},
                  .removed_again = {"/.qws"},
                  .kept = {"/etc/samba/smb.conf"}}),
            (Lines{
                "delete /media/a.tv: 0 -> nothing",
                "keep /media/smb.conf: 7 -> 7",
                "add /media/new/file: nothing -> 1",
                "add /media/file: nothing -> 2",
                "add /media/link: nothing -> hard link etc/samba/new/file",
                "delete /.qws: link /media -> nothing",
            }));
}

TEST_F(ForecastTest, WhatTheArchivesBringIsInTheWay) {
  files.makeDirectory("/etc");
  files.makeLink("/link", "/etc");
  EXPECT_EQ(files.told(
                {}, {tarOf({member({.name = "etc/a", .type = '2', .link = "/tmp"}),
                            member({.name = "link/b"}, "1"), member({.name = "etc/b/below"}, "1")}),
                     tarOf({member({.name = "etc/a/below"}, "1")})}),
            (Lines{
                "add /etc/a: nothing -> link /tmp",
                "add /etc/b: nothing -> 1",
                "blocked /etc/b/below: nothing -> nothing",
                "blocked /etc/a/below: nothing -> nothing",
            }));
}

TEST_F(ForecastTest, DirectoryInThePlaceOfAKeptFileIsBlocked) {
  files.write("/kept", "content");
  EXPECT_EQ(told({member({.name = "kept/", .type = '5', .mode = 0755})}, {.kept = {"/kept"}}),
            Lines{"blocked /kept: 7 -> 7"});
}

TEST_F(ForecastTest, KeptFileHasTheContentThatItsLinkLedTo) {
  files.write("/shared", "content");
  files.makeLink("/kept", "shared");
  EXPECT_EQ(told({member({.name = "kept"}, "1")}, {.kept = {"/kept"}}),
            Lines{"keep /kept: link shared -> 7"});
}

TEST_F(ForecastTest, DeletedFileThatComesBackIsComparedAndTheRestIsDeleted) {
  files.write("/etc/a.tv", "content");
  files.write("/etc/b.tv", "content");
  files.write("/etc/c.tv", "content");
  files.makeLink("/etc/d.tv", "a.tv");
  files.makeDirectory("/etc/e.tv");
  EXPECT_EQ(told({member({.name = "etc/a.tv"}, "content"), member({.name = "etc/b.tv"}, "new")},
                 {.deleted_first = {"/etc/*.tv", "/etc/c.*", "/etc/none"}}),
            (Lines{
                "same /etc/a.tv: 7 -> 7",
                "change /etc/b.tv: 7 -> 3",
                "delete /etc/c.tv: 7 -> nothing",
                "delete /etc/d.tv: link a.tv -> nothing",
            }));
}

TEST_F(ForecastTest, WhatIsRemovedAgainTakesAllBelowItAlong) {
  files.makeDirectory("/.qws");
  files.makeDirectory("/.qws/old");
  files.write("/.qws/old/file", "12");
  files.write("/.qws/both", "123");
  files.makeLink("/.qws/link", "/etc");
  files.write("/.qwsother", "");
  files.write("/etc/hosts", "");
  EXPECT_EQ(told({member({.name = ".qws/both"}, "123"), member({.name = ".qws/new"}, "1234"),
                  member({.name = ".qwsother"})},
                 {.removed_again = {"/.qws"}}),
            (Lines{
                "removed again /.qws/both: 3 -> nothing",
                "removed again /.qws/new: nothing -> nothing",
                "same /.qwsother: 0 -> 0",
                "delete /.qws: directory -> nothing",
                "delete /.qws/link: link /etc -> nothing",
                "delete /.qws/old: directory -> nothing",
                "delete /.qws/old/file: 2 -> nothing",
            }));
}

TEST_F(ForecastTest, KeptFileStaysAndIsEmptyWhereThereWasNone) {
  files.write("/etc/fstab", "own");
  EXPECT_EQ(
      told({member({.name = "etc/fstab"}, "archived"), member({.name = "etc/passwd"}, "archived")},
           {.kept = {"/etc/fstab", "/etc/passwd"}}),
      (Lines{"keep /etc/fstab: 3 -> 3", "add /etc/passwd: nothing -> 0"}));
}

TEST_F(ForecastTest, KeptFileTakesTheArchivesPermissions) {
  files.write("/etc/shadow", "own", 0600);
  EXPECT_EQ(told({member({.name = "etc/shadow"}, "archived")}, {.kept = {"/etc/shadow"}}),
            Lines{"keep /etc/shadow: 3 -> 3, 600 -> 644"});
}

TEST_F(ForecastTest, LaterMemberOfTheSamePathDecides) {
  files.write("/etc/file", "second");
  EXPECT_EQ(files.told({}, {tarOf({member({.name = "etc/file"}, "first"),
                                   member({.name = "./etc/file"}, "third")}),
                            tarOf({member({.name = "etc/file"}, "second")})}),
            Lines{"same /etc/file: 6 -> 6"});
}

}  // namespace
}  // namespace preview_test
