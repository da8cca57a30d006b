#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "desk/frontend/Countdown.h"
#include "desk/frontend/FrontEnd.h"
#include "desk/frontend/Signals.h"
#include "desk/supervisor/Supervisor.h"

namespace desk {

/// Plays the GUI to a front end from its start to its end: hands over one word at a time, asks now
/// and then for what a job has changed, and ends a box whose time is over.
class Player : public EventListener {
 public:
  /// `signals`: what holds signals back, null when they end the process as they do. Both outlive
  /// the player.
  explicit Player(FrontEnd& front_end, Signals* signals = nullptr)
      : front_end_(front_end), signals_(signals) {}

  /// Plays until the end of the front end's kind. Returns 0 then, or the signal that has ended it.
  /// Raises what the supervisor and the front end raise, and std::runtime_error when the menu does
  /// not open. `supervisor` has this player for its listener.
  int play(Supervisor& supervisor);

  void onEvent(const Event& event) override;
  void onLogLine(const std::string& line) override { front_end_.onLogLine(line); }
  void onCommand(const std::string& command) override { front_end_.onCommand(command); }

 private:
  short wait(const Supervisor& supervisor);
  std::chrono::milliseconds untilDue(Time now) const;
  void stopIfAsked();
  void takeReports(Supervisor& supervisor);
  void take(const Report& report);
  void take(const FrameReport& report);
  void sendWords(Supervisor& supervisor);
  void send(Supervisor& supervisor, const Word& word);
  void keepTime(Supervisor& supervisor);
  bool isOver(const Supervisor& supervisor) const;

  FrontEnd& front_end_;
  Signals* signals_;
  Countdown countdown_;
  std::optional<Time> waiting_since_;     ///< since when the GUI owes an answer
  std::optional<Time> request_frame_at_;  ///< when to ask for what a job has changed
  Word last_word_;
  std::string last_error_;
  bool gui_has_report_ = false;
  bool has_opened_ = false;  ///< whether this GUI has shown its first frame
  bool is_closed_ = false;   ///< whether the menu is closed
  bool has_no_words_ = false;
};

}  // namespace desk
