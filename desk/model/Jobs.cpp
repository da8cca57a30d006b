#include "desk/model/Jobs.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "base/Process.h"
#include "base/SystemError.h"

namespace desk {
namespace {

/// How much output is taken at once: what a pipe holds (pipe(7)), so that nothing is left of a
/// program that has ended, and one that never stops writing does not keep the loop.
constexpr int kBlocksAtOnce = 16;

struct Pipe {
  base::Descriptor read_end;
  base::Descriptor write_end;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw base::SystemError(errno, "pipe");
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return {base::Descriptor(ends[0]), base::Descriptor(ends[1])};
}

/// Starts `argv` with both outputs going into `output`.
pid_t spawn(const std::vector<std::string>& argv, int output) {
  const std::vector<char*> words = base::argumentsOf(argv);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
  pid_t pid = 0;
  const int failure = posix_spawnp(&pid, words[0], &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw base::SystemError(failure, argv[0]);
  return pid;
}

/// Kills and buries a process that is not wanted any more.
void end(pid_t pid) {
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
}

/// A process that cannot be watched is ended.
base::Descriptor watchProcess(pid_t pid) {
  try {
    return base::openProcess(pid);
  } catch (...) {
    end(pid);
    throw;
  }
}

/// Returns the exit status as a shell gives it.
int exitStatus(int wait_status) {
  return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

bool isReadable(int descriptor) {
  pollfd watched = {.fd = descriptor, .events = POLLIN, .revents = 0};
  return poll(&watched, 1, 0) > 0;
}

}  // namespace

Jobs::~Jobs() {
  for (const Job& job : running_) end(job.pid);
}

void Jobs::start(const std::vector<std::string>& argv, OnOutput on_output, OnEnd on_end) {
  Pipe pipe = makePipe();
  const pid_t pid = spawn(argv, pipe.write_end.number());
  running_.push_back(
      {pid, watchProcess(pid), std::move(pipe.read_end), std::move(on_output), std::move(on_end)});
}

std::vector<pollfd> Jobs::watched() const {
  std::vector<pollfd> result;
  for (const Job& job : running_) {
    result.push_back({.fd = job.process.number(), .events = POLLIN, .revents = 0});
    if (job.output) result.push_back({.fd = job.output.number(), .events = POLLIN, .revents = 0});
  }
  return result;
}

void Jobs::report() {
  for (Job& job : running_) readOutput(job);
  for (auto ended = firstEnded(); ended != running_.end(); ended = firstEnded()) {
    readOutput(*ended);
    // Out of the list first: the callback may start another job.
    const Job job = std::move(*ended);
    running_.erase(ended);
    int status = 0;
    waitpid(job.pid, &status, 0);
    job.on_end(exitStatus(status));
  }
}

std::list<Jobs::Job>::iterator Jobs::firstEnded() {
  return std::ranges::find_if(running_,
                              [](const Job& job) { return isReadable(job.process.number()); });
}

void Jobs::readOutput(Job& job) {
  std::array<char, 4096> buffer{};
  for (int block = 0; block < kBlocksAtOnce && job.output; ++block) {
    const ssize_t count = read(job.output.number(), buffer.data(), buffer.size());
    if (count > 0) {
      job.on_output(std::string(buffer.data(), static_cast<std::size_t>(count)));
    } else if (count == 0) {
      job.output.reset();
    } else if (errno != EINTR) {
      return;
    }
  }
}

}  // namespace desk
