#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>

#include "base/Answer.h"
#include "base/Descriptor.h"
#include "base/SystemError.h"
#include "tests/support/TemporaryDirectory.h"

namespace base {
namespace {

constexpr std::chrono::milliseconds kShort{200};

TEST(Answer, DirectoryThatIsThereOrNotAnswers) {
  const support::TemporaryDirectory directory;
  EXPECT_NO_THROW(requireAnswer(directory.path()));
  EXPECT_NO_THROW(requireAnswer(directory / "none"));
}

/// Mounts a file system on `dir`, for this process alone, whose server never answers. Returns that
/// server's end, nothing where it cannot be mounted.
Descriptor mountSilent(const std::string& dir) {
  Descriptor server(open("/dev/fuse", O_RDWR | O_CLOEXEC));
  const std::string options =
      "fd=" + std::to_string(server.number()) + ",rootmode=40000,user_id=0,group_id=0";
  if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0 ||
      mount("silent", dir.c_str(), "fuse", 0, options.c_str()) != 0) {
    return {};
  }
  return server;
}

/// Returns the number of the error that is raised for `dir`, 0 for none.
int errorOf(const std::string& dir) {
  try {
    requireAnswer(dir, kShort);
    return 0;
  } catch (const SystemError& error) {
    return error.code().value();
  }
}

TEST(Answer, ServerThatNeverAnswersIsNotWaitedForAndOneThatIsGoneHasAnswered) {
  constexpr int kNoMount = 255;
  const support::TemporaryDirectory directory;
  const pid_t process = fork();
  if (process == 0) {
    Descriptor server = mountSilent(directory.path());
    if (!server) _exit(kNoMount);
    const bool is_silent = errorOf(directory.path()) == ETIMEDOUT;
    server.reset();
    _exit(is_silent && errorOf(directory.path()) == 0 ? 0 : 1);
  }
  int status = 0;
  waitpid(process, &status, 0);
  if (WEXITSTATUS(status) == kNoMount) GTEST_SKIP() << "no such file system can be mounted here";
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace base
