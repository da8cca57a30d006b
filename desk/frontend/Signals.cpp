#include "desk/frontend/Signals.h"

#include <ctime>

namespace desk {
namespace {

/// The signals that ask a process to end: by a person, another process or a lost connection.
constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t ending_signal = 0;
volatile std::sig_atomic_t asked_to_stop = 0;
volatile std::sig_atomic_t continued = 0;

void takeNote(int signal) {
  ending_signal = signal;
}

void takeNoteOfStop(int /*signal*/) {
  asked_to_stop = 1;
}

void takeNoteOfGoingOn(int /*signal*/) {
  continued = 1;
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(signal, &action, nullptr);
}

/// Returns whether the note was taken, and forgets it.
bool take(volatile std::sig_atomic_t& note) {
  const bool is_taken = note != 0;
  note = 0;
  return is_taken;
}

}  // namespace

Signals::Signals() {
  sigset_t held{};
  sigemptyset(&held);
  for (const int signal : kEnding) sigaddset(&held, signal);
  sigaddset(&held, SIGWINCH);
  sigaddset(&held, SIGTSTP);
  sigaddset(&held, SIGCONT);
  sigprocmask(SIG_BLOCK, &held, &before_);
  for (const int signal : kEnding) handle(signal, takeNote);
  handle(SIGTSTP, takeNoteOfStop);
  handle(SIGCONT, takeNoteOfGoingOn);
}

Signals::~Signals() {
  for (const int signal : kEnding) handle(signal, SIG_DFL);
  handle(SIGTSTP, SIG_DFL);
  handle(SIGCONT, SIG_DFL);
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void Signals::wait(std::span<pollfd> watched, std::chrono::milliseconds time) const {
  const timespec limit = {.tv_sec = time.count() / 1000, .tv_nsec = time.count() % 1000 * 1000000};
  for (pollfd& one : watched) one.revents = 0;
  ppoll(watched.data(), watched.size(), &limit, &before_);
}

int Signals::end() {
  return ending_signal;
}

bool Signals::takeStop() {
  return take(asked_to_stop);
}

void Signals::stop() {
  handle(SIGTSTP, SIG_DFL);
  sigset_t stops{};
  sigemptyset(&stops);
  sigaddset(&stops, SIGTSTP);
  raise(SIGTSTP);
  sigprocmask(SIG_UNBLOCK, &stops, nullptr);
  sigprocmask(SIG_BLOCK, &stops, nullptr);
  handle(SIGTSTP, takeNoteOfStop);
}

bool Signals::takeContinued() {
  return take(continued);
}

}  // namespace desk
