#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/command/preview/Told.h"
#include "tests/support/archive/TarWriter.h"

namespace preview_test {
namespace {

using archive_test::member;

struct HostileMembersTest : testing::Test {
  HostileMembersTest() {
    files.makeDirectory("/etc");
    files.writeOutside("outside", "secret");
  }

  Lines told(const std::vector<std::string>& members) const {
    return files.told({}, {tarOf(members)});
  }

  Files files;
};

TEST_F(HostileMembersTest, PathsAreThoseOfTheReceiverHoweverTheyClimb) {
  EXPECT_EQ(told({member({.name = "../outside"}, "secret"), member({.name = "/etc/../other"}, "1"),
                  member({.name = "none/../../other"}, "1")}),
            (Lines{
                "add /outside: nothing -> 6",
                "add /other: nothing -> 1",
                "add /none/../../other: nothing -> 1",
            }));
  files.write("/outside", "secret");
  EXPECT_EQ(told({member({.name = "../outside"}, "secret")}), Lines{"same /outside: 6 -> 6"});
}

TEST_F(HostileMembersTest, DirectoryAboveTheReceiverIsTheReceiver) {
  for (const char* path : {"..", "etc/.."}) {
    EXPECT_EQ(told({member({.name = path, .type = '5', .mode = 0755})}),
              Lines{"same /: directory -> directory"});
  }
}

TEST_F(HostileMembersTest, LinksOfTheReceiverDoNotLeadOut) {
  files.makeLink("/climbing", "../..");
  files.makeLink("/absolute", "/");
  files.makeLink("/etc/outside", "../../outside");
  EXPECT_EQ(told({member({.name = "climbing/outside"}, "secret"),
                  member({.name = "absolute/etc/outside"}, "secret")}),
            (Lines{
                "add /outside: nothing -> 6",
                "change /etc/outside: link ../../outside -> 6",
            }));
}

TEST_F(HostileMembersTest, SpecialFilesAreNeverOpened) {
  EXPECT_EQ(told({member({.name = "etc/device", .type = '3'}),
                  member({.name = "etc/pipe", .type = '6'})}),
            (Lines{"add /etc/device: nothing -> device", "add /etc/pipe: nothing -> FIFO"}));
}

TEST_F(HostileMembersTest, PathThatNoFileCanHaveIsUnreadable) {
  const std::string name(300, 'n');
  EXPECT_EQ(told({archive_test::longPath(name) + member({.name = name}, "1")}),
            Lines{"unreadable /" + name + ": nothing -> 1"});
}

TEST_F(HostileMembersTest, HardLinkToItselfOrToNothingIsTold) {
  files.write("/etc/file", "x");
  EXPECT_EQ(told({member({.name = "etc/file", .type = '1', .link = "etc/file"}),
                  member({.name = "etc/new", .type = '1', .link = "../outside"})}),
            (Lines{
                "change /etc/file: 1 -> hard link etc/file",
                "add /etc/new: nothing -> hard link ../outside",
            }));
}

}  // namespace
}  // namespace preview_test
