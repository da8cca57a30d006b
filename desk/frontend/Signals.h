#pragma once

#include <poll.h>

#include <array>
#include <chrono>
#include <csignal>
#include <span>

namespace desk {

/// Lets signals through only while a front end waits, so that whatever their handlers do, those of
/// a library among them, happens between two steps and never within one. A signal that asks the
/// process to end or to stop is taken note of, unless the process ignores it. There is one at a
/// time.
class Signals {
 public:
  /// Holds the signals back. To be made before curses is started, which leaves handlers alone that
  /// are there.
  Signals();

  /// Puts everything back as it was.
  ~Signals();
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  /// Waits until one of `watched` has something, a signal has come or the time is over.
  void wait(std::span<pollfd> watched, std::chrono::milliseconds time) const;

  /// Returns the signal that asks the process to end, 0 for none.
  int end() const;

  /// Returns whether the terminal has asked the process to stop since this was last asked. Curses's
  /// own handler would not do: what comes while it draws is lost.
  bool takeStop();

  /// Stops the process, as it would have stopped at once. Returns when it goes on.
  void stop();

  /// Returns whether the process has gone on after a stop since this was last asked.
  bool takeContinued();

 private:
  static constexpr int kNoted[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGCONT};

  sigset_t mask_before_{};
  std::array<struct sigaction, std::size(kNoted)> before_{};
};

}  // namespace desk
