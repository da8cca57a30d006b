#pragma once

#include <string>

#include "desk/frontend/FrontEnd.h"
#include "desk/terminal/Log.h"
#include "desk/terminal/Picture.h"
#include "desk/terminal/Views.h"

namespace desk::terminal {

/// Puts together what the terminal shows: the GUI's frame, the legend of its keys, the log pane,
/// the help, and what there is to say.
class Television {
 public:
  /// The least terminal that a picture fits into.
  static constexpr Size kLeast = {64, 20};

  explicit Television(const Lettering& lettering) : lettering_(lettering) {}

  /// Takes the frame to be shown from now on.
  void show(const Frame& frame);

  /// Adds a line to the log pane; `mark` goes before it.
  void log(const std::string& mark, const std::string& text, Ink ink) { log_.add(mark, text, ink); }

  /// Says something until the next key.
  void say(const std::string& notice, Ink ink);

  /// Says which command is running while the GUI is busy; "" for none.
  void setCommand(const std::string& command) { command_ = command; }

  /// Whether what a viewer asks for has nothing to do with the GUI, however busy that is.
  bool takesAtOnce(const std::string& action) const {
    return help_is_open_ || action == action::kHelp || action == action::kLog;
  }

  /// Takes what a viewer asks for. Returns the word for the GUI, "" when there is none to send.
  std::string take(const std::string& action);

  /// Returns what is to be seen on a terminal of this size.
  Picture picture(Size size, const Moment& moment);

 private:
  void drawStatus(Picture& picture, int y, const Moment& moment) const;

  Lettering lettering_;
  Frame frame_;
  Lookings lookings_;
  Log log_;
  bool log_is_open_ = false;
  bool help_is_open_ = false;
  bool has_room_ = true;
  std::string notice_;
  Ink notice_ink_ = Ink::notice;
  std::string command_;
};

}  // namespace desk::terminal
