#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "base/Walk.h"
#include "tests/support/TemporaryDirectory.h"

namespace base {
namespace {

/// Returns which file is open, or why there is none.
std::string described(const Descriptor& file) {
  if (!file) return "errno " + std::to_string(errno);
  struct stat status {};
  fstat(file.number(), &status);
  return "inode " + std::to_string(status.st_ino);
}

std::string describedByKernel(int root, const char* path, int flags) {
  open_how how{};
  how.flags = static_cast<unsigned>(flags);
  how.resolve = RESOLVE_IN_ROOT;
  return described(
      Descriptor(static_cast<int>(syscall(SYS_openat2, root, path, &how, sizeof how))));
}

TEST(WalkTest, OpensWhatTheKernelOpensInARoot) {
  const support::TemporaryDirectory directory;
  for (const char* made : {"root", "root/a", "root/a/b"}) directory.makeDirectory(made);
  directory.write("secret", "outside");
  directory.write("root/secret", "inside");
  directory.write("root/a/b/file", "text");
  directory.makeLink("root/a/absolute", "/secret");
  directory.makeLink("root/a/climbing", "../../../secret");
  directory.makeLink("root/a/b/up", "../..");
  directory.makeLink("root/to-b", "a/b/");
  directory.makeLink("root/to-file", "to-b/file");
  directory.makeLink("root/dangling", "/nothing");
  directory.makeLink("root/loop", "loop");
  const Descriptor root(::open((directory / "root").c_str(), O_PATH | O_DIRECTORY));
  if (describedByKernel(root.number(), "/", O_PATH) == "errno " + std::to_string(ENOSYS)) {
    GTEST_SKIP() << "this kernel has no openat2(2) to compare with";
  }
  for (const char* path : {"/",
                           "//",
                           ".",
                           "..",
                           "/..",
                           "/secret",
                           "/../secret",
                           "/secret/",
                           "/secret/.",
                           "/secret/..",
                           "/a/b/file",
                           "a/./b/../b//file",
                           "/a/b/../..",
                           "/a/b/../../secret",
                           "/a/b/",
                           "/a/absolute",
                           "/a/climbing",
                           "/a/b/up",
                           "/a/b/up/secret",
                           "/a/b/up/",
                           "/to-b",
                           "/to-b/",
                           "/to-b/..",
                           "/to-b/file",
                           "/to-file",
                           "/to-file/",
                           "/dangling",
                           "/dangling/",
                           "/loop",
                           "/loop/",
                           "/loop/x",
                           "/nothing",
                           "/nothing/..",
                           "/nothing/x"}) {
    for (const int flags :
         {O_RDONLY, O_PATH, O_PATH | O_NOFOLLOW, O_PATH | O_DIRECTORY, O_RDONLY | O_DIRECTORY}) {
      EXPECT_EQ(described(openBelow(root.number(), path, flags)),
                describedByKernel(root.number(), path, flags))
          << path << " with flags " << flags;
    }
  }
}

}  // namespace
}  // namespace base
