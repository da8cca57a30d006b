#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/Files.h"
#include "base/Root.h"
#include "base/SystemError.h"
#include "tests/support/TemporaryDirectory.h"

namespace base {
namespace {

/// A directory "root" with a file beside it that nobody inside can see.
struct RootTest : testing::Test {
  RootTest() {
    for (const char* made : {"root", "root/etc", "root/etc/sub"}) directory.makeDirectory(made);
    directory.write("secret", "outside\n");
    directory.write("root/secret", "inside\n");
    directory.write("root/etc/hosts", "one\ntwo\n");
  }

  void link(const std::string& target, const std::string& path) const {
    directory.makeLink("root" + path, target);
  }

  std::string contentOf(const std::string& path) const {
    return readAll(root().open(path).number(), path);
  }

  Root root() const { return Root(directory / "root"); }

  support::TemporaryDirectory directory;
};

TEST_F(RootTest, PathsStayInsideWhateverTheyNameAndLinksToo) {
  link("/secret", "/etc/absolute");
  link("../../../../secret", "/etc/climbing");
  link("/etc", "/elsewhere");
  for (const char* path : {"/secret", "/../secret", "/etc/../../../secret", "/etc/absolute",
                           "/etc/climbing", "/elsewhere/absolute"}) {
    EXPECT_EQ(contentOf(path), "inside\n") << path;
  }
}

TEST_F(RootTest, StatusFollowsLinksAndLinkStatusDoesNot) {
  link("/etc/hosts", "/link");
  link("/nowhere", "/dangling");
  EXPECT_EQ(root().status("/link")->st_size, 8);
  EXPECT_TRUE(S_ISLNK(root().linkStatus("/link")->st_mode));
  EXPECT_EQ(root().linkTarget("/link"), "/etc/hosts");
  EXPECT_FALSE(root().status("/dangling"));
  EXPECT_TRUE(root().linkStatus("/dangling"));
}

TEST_F(RootTest, WhatIsNotThereHasNoStatus) {
  link("/loop", "/loop");
  for (const char* path : {"/nothing", "/etc/hosts/below", "/nothing/below", "/loop"}) {
    EXPECT_FALSE(root().status(path)) << path;
  }
}

TEST_F(RootTest, NamesAreThoseOfTheDirectory) {
  std::vector<std::string> names = root().names("/etc");
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"hosts", "sub"}));
}

TEST_F(RootTest, WhatCannotBeReadRaisesWhatTheSystemSays) {
  EXPECT_THROW(Root(directory / "none"), SystemError);
  EXPECT_THROW(Root(directory / "secret"), SystemError);
  EXPECT_THROW(root().open("/nothing"), SystemError);
  EXPECT_THROW(root().names("/etc/hosts"), SystemError);
  EXPECT_THROW(root().linkTarget("/etc/hosts"), SystemError);
}

TEST_F(RootTest, PipeIsOpenedWithoutWaitingForItsOtherEnd) {
  ASSERT_EQ(mkfifo((directory / "root/pipe").c_str(), 0600), 0);
  EXPECT_TRUE(root().open("/pipe"));
}

TEST_F(RootTest, WholeSystemIsARootToo) {
  EXPECT_EQ(readAll(Root("/").open(directory / "secret").number(), ""), "outside\n");
}

}  // namespace
}  // namespace base
