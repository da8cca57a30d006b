#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "desk/play/Countdown.h"
#include "desk/supervisor/Supervisor.h"

namespace desk {

/// How a live front end talks with the GUI: it hands over one word at a time, asks now and then for
/// what a job has changed, and ends a box whose time is over.
class Conversation {
 public:
  /// `supervisor` outlives the conversation.
  explicit Conversation(Supervisor& supervisor) : supervisor_(supervisor) {}

  /// Gets a frame, and whether it answers a word or tells of the end of a job, rather than of
  /// something in between.
  using TakeFrame = std::function<void(Channel::Message frame, bool is_answer)>;

  /// Takes the message that has come, and all that have come with it. Raises what the supervisor
  /// raises.
  void takeMessages(const TakeFrame& take);

  /// Whether the GUI waits for a word.
  bool isFree() const { return supervisor_.unanswered() == 0; }

  /// Hands a word over to a GUI that waits for one.
  void send(const std::string& word);

  /// Does what is due now. `seconds_left`: what is left of the shown box's time, nothing for none.
  void keepTime(Time now, std::optional<int> seconds_left);

  /// Returns since when the GUI has been at work on a word; nothing when it is not, or has begun
  /// only just now.
  std::optional<Time> busySince(Time now) const;

  /// Returns how long nothing is due, and nothing that is shown changes by itself; it does so with
  /// a box's time where `counts_down`.
  std::chrono::milliseconds untilDue(Time now, bool counts_down) const;

 private:
  void take(Channel::Message message, const TakeFrame& take);

  Supervisor& supervisor_;
  std::optional<Time> waiting_since_;  ///< since when the GUI owes an answer
  std::optional<Time> show_at_;        ///< when to ask for what a job has changed
};

}  // namespace desk
