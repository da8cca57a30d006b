#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/SystemError.h"
#include "host/dryrun/System.h"
#include "tests/support/TemporaryDirectory.h"

namespace dryrun {
namespace {

using Names = std::vector<std::string>;

/// A receiver with a file, and a medium that lies elsewhere.
struct SystemTest : testing::Test {
  SystemTest() {
    receiver.makeDirectory("etc");
    receiver.makeDirectory("media/hdd");
    receiver.write("etc/hostname", "box\n");
    receiver.write("media/hdd/hidden", "");
    medium.makeDirectory("backups");
    medium.write("backups/one", "12345");
    system.mount("/media/hdd", base::Root(medium.path()));
  }

  support::TemporaryDirectory receiver;
  support::TemporaryDirectory medium;
  System system{base::Root(receiver.path())};
};

TEST_F(SystemTest, FilesAreTheReceiversAndThoseOfAMountedDirectory) {
  EXPECT_EQ(system.open("/etc/hostname"), Names{"box\n"});
  EXPECT_EQ(system.open("/media/hdd/backups/one"), Names{"12345"});
  EXPECT_EQ(system.fileSize("/media/hdd/backups/one"), 5);
  EXPECT_EQ(system.listdir("/media/hdd"), Names{"backups"});
  EXPECT_FALSE(system.exists("/media/hdd/hidden"));
  EXPECT_TRUE(system.exists("/media/hdd"));
  EXPECT_FALSE(system.exists("/media/hdd2"));
}

TEST_F(SystemTest, WhatIsNotThereRaisesAsAnOperatingSystemDoes) {
  EXPECT_FALSE(system.exists("/etc/passwd"));
  EXPECT_FALSE(system.exists("/etc/" + std::string(256, 'x')));
  EXPECT_THROW(system.open("/etc/passwd"), base::SystemError);
  EXPECT_THROW(system.fileSize("/etc/passwd"), base::SystemError);
  EXPECT_THROW(system.listdir("/none"), base::SystemError);
}

TEST_F(SystemTest, CommandsAndRemovalsAreWrittenDownInOrderAndDoNothing) {
  const std::string touched = receiver / "touched";
  EXPECT_EQ(system.system("touch " + touched), 0);
  EXPECT_EQ(system.popen("echo; touch " + touched), Names{});
  system.remove("/etc/hostname");
  system.makedirs("/etc/sub");
  system.chmod("/etc/hostname", 0);
  EXPECT_EQ(system.takeCommands(), (Names{"touch " + touched, "echo; touch " + touched}));
  EXPECT_EQ(system.takeCommands(), Names{});
  EXPECT_EQ(system.takeRemoved(), Names{"/etc/hostname"});
  EXPECT_EQ(system.takeRemoved(), Names{});
  EXPECT_FALSE(std::filesystem::exists(touched));
  EXPECT_EQ(receiver.read("etc/hostname"), "box\n");
  EXPECT_FALSE(std::filesystem::exists(receiver / "etc/sub"));
}

TEST_F(SystemTest, WithoutAReceiverEveryFileOfItIsTakenToBeThereAndEmpty) {
  System any(std::nullopt);
  any.mount("/media/hdd", base::Root(medium.path()));
  EXPECT_TRUE(any.exists("/etc/samba/smb.conf"));
  EXPECT_EQ(any.fileSize("/etc/samba/smb.conf"), 0);
  EXPECT_EQ(any.open("/etc/samba/smb.conf"), Names{});
  EXPECT_EQ(any.listdir("/etc"), Names{});
  EXPECT_FALSE(any.exists("/media/hdd/backups/two"));
}

}  // namespace
}  // namespace dryrun
