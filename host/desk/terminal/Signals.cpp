#include "Signals.h"

#include <ctime>

namespace desk::terminal {
namespace {

/// The signals that ask a process to end: by a person, another process or a lost connection.
constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t ending_signal = 0;

void takeNote(int signal) {
  ending_signal = signal;
}

}  // namespace

Signals::Signals() {
  sigset_t held{};
  sigemptyset(&held);
  for (const int signal : kEnding) sigaddset(&held, signal);
  sigaddset(&held, SIGWINCH);
  sigaddset(&held, SIGTSTP);
  sigprocmask(SIG_BLOCK, &held, &before_);
  for (const int signal : kEnding) {
    struct sigaction action {};
    action.sa_handler = takeNote;
    sigaction(signal, &action, nullptr);
  }
}

Signals::~Signals() {
  for (const int signal : kEnding) std::signal(signal, SIG_DFL);
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void Signals::wait(std::vector<pollfd>& watched, std::chrono::milliseconds time) const {
  const timespec limit = {.tv_sec = time.count() / 1000, .tv_nsec = time.count() % 1000 * 1000000};
  for (pollfd& one : watched) one.revents = 0;
  ppoll(watched.data(), watched.size(), &limit, &before_);
}

int Signals::end() {
  return ending_signal;
}

}  // namespace desk::terminal
