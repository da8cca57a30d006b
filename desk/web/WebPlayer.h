#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "desk/drawing/Drawing.h"
#include "desk/play/Conversation.h"
#include "desk/supervisor/Supervisor.h"
#include "desk/web/Board.h"

namespace desk::web {

/// A front end for browsers: it draws what the GUI shows onto a board, and hands over what viewers
/// press there.
class WebPlayer : public Events {
 public:
  /// Both outlive the player.
  WebPlayer(Board& board, drawing::Drawing& drawing) : board_(board), drawing_(drawing) {}

  /// Shows the GUI until its menu closes. Raises what the supervisor raises, and std::runtime_error
  /// when the menu does not open.
  void play(Supervisor& supervisor);

  void onEvent(const Channel::Message& event) override;
  void onLogLine(const std::string& line) override { addLine("print", line); }
  void onCommand(const std::string& command) override { addLine("command", command); }

 private:
  /// What a picture depends on: the frame by its number, the seconds left, whether the GUI is busy.
  using Drawn = std::tuple<std::uint64_t, std::optional<int>, bool>;

  void wait(const Supervisor& supervisor, const Conversation& gui);
  void takeFrame(Channel::Message frame);
  void pressWords(Conversation& gui);
  void showPicture(const Conversation& gui);
  void addNotices();
  void addLine(const char* kind, const std::string& text);
  bool isOpen() const { return !frame_.at("screen").get_ref<const std::string&>().empty(); }

  Board& board_;
  drawing::Drawing& drawing_;
  Channel::Message frame_ = {{"screen", ""}};
  Countdown countdown_;
  std::uint64_t frames_ = 0;
  std::optional<Drawn> drawn_;
  std::size_t notices_ = 0;
  std::string said_;  ///< what there is to say beside the picture
  std::string last_error_;
  bool has_opened_ = false;
  bool gui_has_message_ = false;
};

}  // namespace desk::web
