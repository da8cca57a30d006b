#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
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
  };

  /// Raises base::SystemError.
  Board();

  /// Puts a picture up in the place of the one before: an object whose "svg" is the picture itself.
  void showPicture(const nlohmann::ordered_json& picture);

  /// Returns the picture itself; "" before the first.
  std::string svg();

  /// Adds a line to the log; the oldest goes when there are too many.
  void addLine(const nlohmann::ordered_json& line);

  /// Says that nothing will come any more.
  void end();

  /// Waits until there is something that a viewer has not seen, for at most `patience`. Returns it
  /// as server-sent events (the HTML standard, "text/event-stream") and takes note of it in `seen`;
  /// the event "alive" when there is nothing; nothing after the end.
  std::optional<std::string> nextEvents(Seen& seen, std::chrono::milliseconds patience);

  /// Takes a word that a viewer has pressed. Returns false when too many wait to be done already.
  bool press(const std::string& word);

  /// Returns the first word that has not been taken, if there is one.
  std::optional<std::string> takeWord();

  /// What poll(2) has to watch for words: readable from when one is pressed until all are taken.
  int descriptor() const { return pressed_.number(); }

 private:
  std::string newLines(Seen& seen) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t pictures_ = 0;  ///< so many have been shown
  std::string picture_;
  std::string svg_;
  std::uint64_t lines_ = 0;  ///< so many have been added
  std::deque<std::string> last_lines_;
  std::deque<std::string> words_;
  base::Descriptor pressed_;
  bool has_ended_ = false;
};

}  // namespace desk::web
