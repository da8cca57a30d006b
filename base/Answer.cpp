#include "base/Answer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "base/Descriptor.h"
#include "base/SystemError.h"

namespace base {
namespace {

/// Lets go of all that this process has open but `kept`, which becomes 0: one that cannot be ended
/// would keep locks, and whoever reads its output waiting.
void keepOnly(int kept) {
  dup2(kept, 0);
#ifdef SYS_close_range
  if (syscall(SYS_close_range, 1U, ~0U, 0U) == 0) return;
#endif
  for (auto descriptor = static_cast<int>(sysconf(_SC_OPEN_MAX)); --descriptor > 0;) {
    close(descriptor);
  }
}

/// Asks the server of a share, whatever the kernel remembers of it. Calls nothing but the kernel.
/// `lives` is closed by the end.
[[noreturn]] void ask(const char* path, int lives) {
  keepOnly(lives);
  struct statfs status {};
  std::array<char, 4096> entries{};
  statfs(path, &status);
  const int directory = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  syscall(SYS_getdents64, directory, entries.data(), entries.size());
  _exit(0);
}

}  // namespace

void requireAnswer(const std::string& path, std::chrono::milliseconds limit) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw SystemError(errno, "pipe");
  const Descriptor ended(ends[0]);
  Descriptor lives(ends[1]);  // closed by its end: kernels of receivers are older than pidfd_open()
  const pid_t process = fork();
  if (process < 0) throw SystemError(errno, "fork");
  if (process == 0) ask(path.c_str(), lives.number());
  lives.reset();
  pollfd waiting{ended.number(), POLLIN, 0};
  int ready = 0;
  do {
    ready = poll(&waiting, 1, static_cast<int>(limit.count()));
  } while (ready < 0 && errno == EINTR);
  if (ready == 0) kill(process, SIGKILL);
  waitpid(process, nullptr, ready == 0 ? WNOHANG : 0);
  if (ready == 0) throw SystemError(ETIMEDOUT, path);
}

}  // namespace base
