#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "base/Descriptor.h"

namespace desk::web {

/// What stands between the receiver and its viewers: the picture as it is, the last lines of the
/// log, and the words that viewers have pressed. Every operation may be called from any thread.
/// What it keeps does not grow with the number of viewers, nor with how slow they are.
class Board {
 public:
  /// How much of the board a viewer has seen.
  struct Seen {
    std::uint64_t picture = 0;
    std::uint64_t lines = 0;
    bool end = false;
  };

  /// A server-sent event (the HTML standard, "text/event-stream"), which all viewers share.
  using Event = std::shared_ptr<const std::string>;

  /// Raises base::SystemError.
  Board();

  /// Puts a picture up in the place of the one before. `data`: what the page gets, on one line.
  void showPicture(const std::string& data);

  /// Adds a line to the log; the oldest goes when there are too many. `data`: what the page gets,
  /// on one line.
  void addLine(const std::string& data);

  /// Says that nothing will come any more.
  void end();

  /// Returns the next event that a viewer has not seen and takes note of it in `seen`; null when
  /// there is none. The last one is the end.
  Event next(Seen& seen);

  /// An eventfd(2) that becomes readable when there is a new event.
  int news() const { return news_.number(); }

  /// Takes a word that a viewer has pressed. Returns false when too many wait to be done already.
  bool press(const std::string& word);

  /// Returns the first word that has not been taken, if there is one.
  std::optional<std::string> takeWord();

  /// What poll(2) has to watch for words: readable from when one is pressed until all are taken.
  int descriptor() const { return pressed_.number(); }

 private:
  void tell();

  std::mutex mutex_;
  std::uint64_t pictures_ = 0;  ///< so many have been shown
  Event picture_;
  std::uint64_t lines_ = 0;  ///< so many have been added
  std::deque<Event> last_lines_;
  std::deque<std::string> words_;
  base::Descriptor pressed_;
  base::Descriptor news_;
  bool has_ended_ = false;
};

}  // namespace desk::web
