#include "desk/terminal/TerminalPlayer.h"

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace desk::terminal {
namespace {

/// How much of what is pressed ahead of a busy GUI is read.
constexpr std::size_t kMostPressed = 32;

}  // namespace

TerminalPlayer::TerminalPlayer(std::optional<Theme> theme, const std::filesystem::path& record)
    : record_(record), display_(theme) {}

int TerminalPlayer::play(Supervisor& supervisor) {
  Conversation gui(supervisor);
  for (;;) {
    wait(supervisor, gui);
    if (Signals::end() != 0) {
      supervisor.kill();
      return Signals::end();
    }
    if (terminal_has_gone_) {
      supervisor.kill();
      throw std::runtime_error("the terminal has gone");
    }
    if (Signals::takeStop()) {
      display_.giveBack();
      Signals::stop();
      display_.takeBack();
    }
    if (Signals::takeContinued()) display_.takeBack();
    takeMessages(gui);
    if (has_opened_ && !television_.isOpen()) return 0;
    // What a key or a click means depends on what is shown.
    showPicture();
    takeKeys();
    pressKeys(gui);
    keepTime(gui);
    showPicture();
  }
}

/// Waits until a key, a message or a signal has come, or something that is shown changes by itself.
void TerminalPlayer::wait(const Supervisor& supervisor, const Conversation& gui) {
  std::vector<pollfd> watched = {
      {.fd = STDIN_FILENO, .events = static_cast<short>(takesKeys() ? POLLIN : 0), .revents = 0},
      {.fd = supervisor.descriptor(), .events = POLLIN, .revents = 0},
  };
  const Time now = Clock::now();
  signals_.wait(watched, gui.untilDue(now, television_.secondsLeft(now).has_value()));
  terminal_has_gone_ = (watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
  gui_has_message_ = watched[1].revents != 0;
}

void TerminalPlayer::takeMessages(Conversation& gui) {
  if (!gui_has_message_) return;
  gui.takeMessages([this](Channel::Message frame, bool is_answer) {
    if (record_ && is_answer) record_.append(frame.dump());
    showFrame(std::move(frame));
  });
}

void TerminalPlayer::showFrame(Channel::Message frame) {
  television_.show(std::move(frame), Clock::now());
  if (!has_opened_ && !television_.isOpen()) {
    throw std::runtime_error("the menu does not open: " + last_error_);
  }
  has_opened_ = true;
}

/// Whether more keys are read now; others stay in the terminal's own buffer.
bool TerminalPlayer::takesKeys() const {
  return pressed_.size() < kMostPressed;
}

void TerminalPlayer::takeKeys() {
  while (takesKeys()) {
    const auto action = display_.read(picture_);
    if (!action) return;
    if (*action == action::kRedraw) {
      display_.forget();
    } else if (television_.takesAtOnce(*action)) {
      television_.take(*action);
    } else if (!action->empty()) {
      pressed_.push_back(*action);
    }
  }
}

/// Does what has been pressed, in order, as long as the GUI owes no answer.
void TerminalPlayer::pressKeys(Conversation& gui) {
  while (!pressed_.empty() && gui.isFree()) {
    const std::string word = television_.take(pressed_.front());
    pressed_.pop_front();
    if (word.empty()) continue;
    television_.setCommand("");
    gui.send(word);
  }
}

/// Does what is due by the clock.
void TerminalPlayer::keepTime(Conversation& gui) {
  const Time now = Clock::now();
  gui.keepTime(now, television_.secondsLeft(now));
  television_.setBusy(gui.busySince(now));
}

void TerminalPlayer::showPicture() {
  if (!has_opened_) return;
  picture_ = television_.picture(display_.size(), Clock::now());
  display_.show(picture_);
}

void TerminalPlayer::onEvent(const Channel::Message& event) {
  record_.append(event.dump());
  const std::string name = event.at("event");
  if (name == "gui-killed") {
    pressed_.clear();
    display_.dropKeys();
    television_.log("*** ", "the GUI was killed", Ink::notice);
  } else if (name == "gui-started") {
    has_opened_ = false;
    television_.log("*** ", "the GUI was started again", Ink::notice);
    television_.say("The GUI was killed and has been started again.", Ink::notice);
  } else {
    last_error_ = event.at("text");
    television_.log("*** ", last_error_, Ink::error);
    television_.say("Error: " + last_error_, Ink::error);
  }
}

void TerminalPlayer::onLogLine(const std::string& line) {
  television_.log("", line, Ink::text);
}

void TerminalPlayer::onCommand(const std::string& command) {
  television_.log("$ ", command, Ink::description);
  television_.setCommand(command);
}

}  // namespace desk::terminal
