#pragma once

#include <deque>
#include <filesystem>
#include <optional>
#include <string>

#include "desk/play/Conversation.h"
#include "desk/supervisor/Record.h"
#include "desk/supervisor/Supervisor.h"
#include "desk/terminal/Display.h"
#include "desk/terminal/Lettering.h"
#include "desk/terminal/Signals.h"
#include "desk/terminal/Television.h"

namespace desk::terminal {

/// A front end on the terminal: keys and clicks become words, frames become pictures.
class TerminalPlayer : public Events {
 public:
  /// Takes the terminal over. The file `record` gets every frame that answers a word and every
  /// event, one JSON object a line, as the script player prints them; "" for none. Raises
  /// std::runtime_error when the terminal cannot be taken over or the record not be written.
  TerminalPlayer(std::optional<Theme> theme, const std::filesystem::path& record);

  /// Shows the GUI and hands it what the viewer presses until the menu closes. Returns 0 then, or
  /// the signal that has ended it. Raises what the supervisor raises, and std::runtime_error when
  /// the terminal has gone or the menu does not open.
  int play(Supervisor& supervisor);

  void onEvent(const Channel::Message& event) override;
  void onLogLine(const std::string& line) override;
  void onCommand(const std::string& command) override;

 private:
  void showPicture();
  void wait(const Supervisor& supervisor, const Conversation& gui);
  void takeMessages(Conversation& gui);
  void showFrame(Channel::Message frame);
  bool takesKeys() const;
  void takeKeys();
  void pressKeys(Conversation& gui);
  void keepTime(Conversation& gui);

  Record record_;
  Signals signals_;
  Lettering lettering_ = Lettering::ofLocale();
  Television television_{lettering_};
  Display display_;
  Picture picture_{Canvas({0, 0}, lettering_)};
  std::deque<std::string> pressed_;  ///< what is to be done once the GUI has answered
  std::string last_error_;
  bool has_opened_ = false;
  bool gui_has_message_ = false;
  bool terminal_has_gone_ = false;
};

}  // namespace desk::terminal
