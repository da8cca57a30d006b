#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <string>
#include <thread>

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

/// Serves until the first request, and does not answer that one: whoever has made it cannot even be
/// killed.
void serveNothing(int server) {
  alignas(fuse_in_header) std::array<char, FUSE_MIN_READ_BUFFER> request{};
  if (read(server, request.data(), request.size()) <= 0) return;
  struct {
    fuse_out_header header;
    fuse_init_out body;
  } answer{};
  answer.header.len = sizeof answer;
  answer.header.unique = reinterpret_cast<const fuse_in_header*>(request.data())->unique;
  answer.body.major = FUSE_KERNEL_VERSION;
  answer.body.minor = FUSE_KERNEL_MINOR_VERSION;
  answer.body.max_write = 4096;
  if (write(server, &answer, sizeof answer) < 0) return;
  if (read(server, request.data(), request.size()) < 0) return;
}

/// Whether nobody has the other end of a pipe any more.
bool hasEnded(int pipe) {
  pollfd watched{pipe, POLLIN, 0};
  return poll(&watched, 1, 0) == 1 && (watched.revents & POLLHUP) != 0;
}

/// What a process finds out about a server that never answers.
enum Outcome { is_well, has_answered, has_kept_the_pipe, answers_when_gone, cannot_mount };

Outcome askSilentServer(const std::string& dir) {
  Descriptor server = mountSilent(dir);
  std::array<int, 2> ends{};
  if (!server || pipe(ends.data()) != 0) return cannot_mount;
  std::thread serving([&] { serveNothing(server.number()); });
  const int error = errorOf(dir);
  serving.join();
  close(ends[1]);
  const bool has_ended = hasEnded(ends[0]);
  server.reset();
  if (error != ETIMEDOUT) return has_answered;
  if (!has_ended) return has_kept_the_pipe;
  return errorOf(dir) == 0 ? is_well : answers_when_gone;
}

TEST(Answer, ServerThatNeverAnswersIsNotWaitedForWithAnythingOpenAndOneThatIsGoneHasAnswered) {
  const support::TemporaryDirectory directory;
  const pid_t process = fork();
  if (process == 0) _exit(askSilentServer(directory.path()));
  int status = 0;
  waitpid(process, &status, 0);
  if (WEXITSTATUS(status) == cannot_mount) GTEST_SKIP() << "no such file system can be mounted";
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), is_well);
}

}  // namespace
}  // namespace base
