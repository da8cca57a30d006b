#pragma once

#include <poll.h>

#include <chrono>
#include <optional>
#include <string>

#include "desk/protocol/Messages.h"
#include "desk/supervisor/EventListener.h"

namespace desk {

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;

/// How things stand at one time, beside what the GUI shows.
struct Moment {
  Time now;
  std::optional<int> seconds_left = {};  ///< of the shown box; nothing when it has no time-out
  std::optional<Time> busy_since = {};   ///< since when the GUI has been at work on a word
};

/// Shows the GUI to somebody and brings their next word; a Player does the rest.
class FrontEnd : public EventListener {
 public:
  /// Whether real time passes: boxes count down, what a job changes is shown meanwhile, and the end
  /// is that of the menu. Otherwise a box stays until a word closes it, and the end is that of the
  /// words.
  virtual bool isLive() const { return true; }

  /// Takes what the GUI shows from now on. `is_answer`: whether that answers a word or tells of the
  /// end of a job, rather than of something in between.
  virtual void show(const Frame& frame, bool is_answer) = 0;

  /// Returns the next word; nothing when there is none yet. Asked while the GUI waits for one.
  virtual std::optional<Word> nextWord() = 0;

  /// The last word has selected a row that is not there.
  virtual void onMissingRow(const Word& /*word*/) {}

  /// Returns what poll(2) has to watch for input. `is_free`: whether the GUI waits for a word.
  virtual pollfd input(bool /*is_free*/) const { return {.fd = -1, .events = 0, .revents = 0}; }

  /// Input may have come; `events` is what poll(2) says of it.
  virtual void takeInput(short /*events*/) {}

  /// Brings everything up to date with `moment`, after every step.
  virtual void refresh(const Moment& /*moment*/) {}

  /// Leaves the terminal while the process is stopped, and takes it over again.
  virtual void suspend() {}
  virtual void resume() {}
};

}  // namespace desk
