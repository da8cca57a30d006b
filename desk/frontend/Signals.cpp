#include "desk/frontend/Signals.h"

#include <ctime>
#include <utility>

namespace desk {
namespace {

// What the handlers have noted: they have no other place for it.
volatile std::sig_atomic_t ending_signal = 0;
volatile std::sig_atomic_t asked_to_stop = 0;
volatile std::sig_atomic_t continued = 0;

void takeNote(int signal) {
  if (signal == SIGTSTP) {
    asked_to_stop = 1;
  } else if (signal == SIGCONT) {
    continued = 1;
  } else {
    ending_signal = signal;
  }
}

struct sigaction noting() {
  struct sigaction action {};
  action.sa_handler = takeNote;
  return action;
}

/// Returns whether the note was taken, and forgets it.
bool take(volatile std::sig_atomic_t& note) {
  const bool is_taken = note != 0;
  note = 0;
  return is_taken;
}

}  // namespace

Signals::Signals() {
  ending_signal = 0;
  asked_to_stop = 0;
  continued = 0;
  sigset_t held{};
  sigemptyset(&held);
  for (const int signal : kNoted) sigaddset(&held, signal);
  sigaddset(&held, SIGWINCH);  // curses has a handler for it
  sigprocmask(SIG_BLOCK, &held, &mask_before_);
  const struct sigaction note = noting();
  for (std::size_t index = 0; index < before_.size(); ++index) {
    sigaction(kNoted[index], nullptr, &before_[index]);
    if (before_[index].sa_handler != SIG_IGN) sigaction(kNoted[index], &note, nullptr);
  }
}

Signals::~Signals() {
  for (std::size_t index = 0; index < before_.size(); ++index) {
    sigaction(kNoted[index], &before_[index], nullptr);
  }
  sigprocmask(SIG_SETMASK, &mask_before_, nullptr);
}

void Signals::wait(std::span<pollfd> watched, std::chrono::milliseconds time) const {
  const timespec limit = {.tv_sec = time.count() / 1000, .tv_nsec = time.count() % 1000 * 1000000};
  for (pollfd& one : watched) one.revents = 0;
  ppoll(watched.data(), watched.size(), &limit, &mask_before_);
}

int Signals::end() const {
  return ending_signal;
}

bool Signals::takeStop() {
  return take(asked_to_stop);
}

void Signals::stop() {
  struct sigaction usual {};
  usual.sa_handler = SIG_DFL;
  sigaction(SIGTSTP, &usual, nullptr);
  sigset_t stops{};
  sigemptyset(&stops);
  sigaddset(&stops, SIGTSTP);
  raise(SIGTSTP);
  sigprocmask(SIG_UNBLOCK, &stops, nullptr);
  sigprocmask(SIG_BLOCK, &stops, nullptr);
  const struct sigaction note = noting();
  sigaction(SIGTSTP, &note, nullptr);
}

bool Signals::takeContinued() {
  return take(continued);
}

}  // namespace desk
