#include "desk/terminal/Guard.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

#include "desk/terminal/TerminalState.h"

namespace desk::terminal {
namespace {

/// The signals that ask a process to end: the child knows what to do.
constexpr int kForTheChild[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// The signals by which a terminal stops a process: the guard stops when the child has stopped.
constexpr int kStopping[] = {SIGTSTP, SIGTTIN, SIGTTOU};

pid_t child = 0;
volatile std::sig_atomic_t passed_on = 0;

/// How long a child that is asked to end may take, in seconds: it may be waiting for a terminal
/// that nobody reads, and end only by a kill.
constexpr unsigned kPatience = 2;

void passOn(int signal) {
  passed_on = signal;
  if (child > 0) kill(child, signal);
  alarm(kPatience);
}

void losePatience(int /*signal*/) {
  if (child > 0) kill(child, SIGKILL);
}

/// Waits for what the child has left, which ends by itself: the guard is its parent then
/// (PR_SET_CHILD_SUBREAPER in prctl(2)).
void waitForWhatIsLeft() {
  while (wait(nullptr) > 0 || errno == EINTR) {
  }
}

/// Waits for the child's end, stopping with it; what lets the process group go on lets both go on.
/// Returns the child's status as of waitpid(2). A child that is to end but stops, because the
/// terminal is the shell's, is ended here.
int waitForChild() {
  int status = 0;
  for (;;) {
    if (waitpid(child, &status, WUNTRACED) < 0) {
      if (errno == EINTR) continue;
      return status;
    }
    if (!WIFSTOPPED(status)) return status;
    if (passed_on != 0) {
      kill(child, SIGKILL);
      return passed_on;
    }
    std::signal(SIGTSTP, SIG_DFL);
    raise(SIGTSTP);
    std::signal(SIGTSTP, SIG_IGN);
  }
}

/// Ends the guard as the child has ended.
[[noreturn]] void endLike(int status, const TerminalState& before) {
  if (WIFEXITED(status)) _exit(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  const bool has_left_the_terminal = std::ranges::count(kForTheChild, signal) > 0;
  if (!has_left_the_terminal) {
    std::signal(SIGALRM, SIG_DFL);
    alarm(kPatience);
    before.restore();
  }
  if (has_left_the_terminal || passed_on != 0) {
    const int end = passed_on != 0 ? passed_on : signal;
    std::signal(end, SIG_DFL);
    raise(end);
  }
  std::fprintf(stderr, "stowline: the terminal's front end was ended by a signal: %s\n",
               strsignal(signal));
  _exit(EXIT_FAILURE);
}

[[noreturn]] void guard(const TerminalState& before) {
  for (const int signal : kForTheChild) std::signal(signal, passOn);
  for (const int signal : kStopping) std::signal(signal, SIG_IGN);
  std::signal(SIGALRM, losePatience);
  const int status = waitForChild();
  child = 0;
  waitForWhatIsLeft();
  endLike(status, before);
}

}  // namespace

void putGuardBeforeTerminal() {
  const TerminalState before;
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const pid_t guarding = getpid();
  child = fork();
  if (child < 0) {
    throw std::runtime_error(std::string("cannot start the front end: ") + std::strerror(errno));
  }
  if (child > 0) guard(before);
  prctl(PR_SET_CHILD_SUBREAPER, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != guarding) raise(SIGTERM);
}

}  // namespace desk::terminal
