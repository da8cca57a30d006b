#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "desk/play/Countdown.h"
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

  /// Takes the frame to be shown from `now` on.
  void show(Json frame, Time now);

  /// Whether the GUI's menu is open.
  bool isOpen() const { return !frame_.at("screen").get_ref<const std::string&>().empty(); }

  /// Adds a line to the log pane; `mark` goes before it.
  void log(const std::string& mark, const std::string& text, Ink ink) { log_.add(mark, text, ink); }

  /// Says something until the next key.
  void say(const std::string& notice, Ink ink);

  /// Says that the GUI has been at work on a word since then; nothing when it waits for a key.
  void setBusy(std::optional<Time> since) { busy_since_ = since; }

  /// Says which command is running while the GUI is busy; "" for none.
  void setCommand(const std::string& command) { command_ = command; }

  /// Whether what a viewer asks for has nothing to do with the GUI, however busy that is.
  bool takesAtOnce(const std::string& action) const {
    return help_is_open_ || action == action::kHelp || action == action::kLog;
  }

  /// Takes what a viewer asks for. Returns the word for the GUI, "" when there is none to send.
  std::string take(const std::string& action);

  /// Returns the seconds left of the shown box; nothing when it has no time-out.
  std::optional<int> secondsLeft(Time now) const { return countdown_.secondsLeft(now); }

  /// Returns what is to be seen on a terminal of this size.
  Picture picture(Size size, Time now);

 private:
  void drawLegend(Picture& picture, int y) const;
  void drawStatus(Picture& picture, int y, Time now) const;

  Lettering lettering_;
  Json frame_ = {{"screen", ""},
                 {"title", ""},
                 {"widgets", Json::object()},
                 {"rows", Json::array()},
                 {"selected", 0}};
  Looking looking_;
  Countdown countdown_;
  Log log_;
  bool log_is_open_ = false;
  bool help_is_open_ = false;
  bool has_room_ = true;
  std::string notice_;
  Ink notice_ink_ = Ink::notice;
  std::optional<Time> busy_since_;
  std::string command_;
};

}  // namespace desk::terminal
