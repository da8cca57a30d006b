#include "TerminalPlayer.h"

#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace desk::terminal {
namespace {

using std::chrono::milliseconds;

/// From when on the GUI is said to be busy; most answers come sooner.
constexpr milliseconds kBusyAfter(150);

/// How often what a job changes is drawn.
constexpr milliseconds kBetweenShows(50);

/// How often a count-down and the sign of being busy are drawn.
constexpr milliseconds kTick(100);

/// How much of what is pressed ahead of a busy GUI is read.
constexpr std::size_t kMostPressed = 32;

}  // namespace

TerminalPlayer::TerminalPlayer(std::optional<Theme> theme, const std::filesystem::path& record)
    : record_(record), display_(theme) {}

int TerminalPlayer::play(Supervisor& supervisor) {
  for (;;) {
    wait(supervisor);
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
    takeMessages(supervisor);
    if (has_opened_ && !television_.isOpen()) return 0;
    // What a key or a click means depends on what is shown.
    showPicture();
    takeKeys();
    pressKeys(supervisor);
    keepTime(supervisor);
    showPicture();
  }
}

/// Waits until a key, a message or a signal has come, or something that is shown changes by itself.
void TerminalPlayer::wait(const Supervisor& supervisor) {
  std::vector<pollfd> watched = {
      {.fd = STDIN_FILENO, .events = static_cast<short>(takesKeys() ? POLLIN : 0), .revents = 0},
      {.fd = supervisor.descriptor(), .events = POLLIN, .revents = 0},
  };
  signals_.wait(watched, untilNextChange());
  terminal_has_gone_ = (watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
  gui_has_message_ = watched[1].revents != 0;
}

milliseconds TerminalPlayer::untilNextChange() const {
  constexpr milliseconds kNever(60000);
  if (show_at_) {
    const auto left = std::chrono::ceil<milliseconds>(*show_at_ - Clock::now());
    return std::clamp(left, milliseconds(0), kTick);
  }
  return waiting_since_ || television_.secondsLeft(Clock::now()) ? kTick : kNever;
}

void TerminalPlayer::takeMessages(Supervisor& supervisor) {
  if (!gui_has_message_) return;
  do {
    if (auto message = supervisor.receive()) take(std::move(*message));
  } while (supervisor.hasMessage());
  if (supervisor.unanswered() == 0) {
    waiting_since_.reset();
  } else if (!waiting_since_) {
    waiting_since_ = Clock::now();
  }
}

void TerminalPlayer::take(Channel::Message message) {
  if (message.contains("changed")) {
    if (!show_at_) show_at_ = Clock::now() + kBetweenShows;
  } else if (message.contains("shown")) {
    showFrame(std::move(message.at("shown")));
  } else if (!message.contains("missing")) {
    Channel::Message& frame = message.at(message.contains("idle") ? "idle" : "frame");
    if (record_) record_.append(frame.dump());
    showFrame(std::move(frame));
  }
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
void TerminalPlayer::pressKeys(Supervisor& supervisor) {
  while (!pressed_.empty() && supervisor.unanswered() == 0) {
    const std::string word = television_.take(pressed_.front());
    pressed_.pop_front();
    if (word.empty()) continue;
    television_.setCommand("");
    supervisor.send(word);
    waiting_since_ = Clock::now();
  }
}

/// Does what is due by the clock.
void TerminalPlayer::keepTime(Supervisor& supervisor) {
  const Time now = Clock::now();
  if (show_at_ && *show_at_ <= now) {
    supervisor.show();
    show_at_.reset();
  }
  if (television_.secondsLeft(now) == 0 && supervisor.unanswered() == 0) {
    supervisor.send("timeout");
    waiting_since_ = now;
  }
  const bool is_busy = waiting_since_ && now - *waiting_since_ >= kBusyAfter;
  television_.setBusy(is_busy ? waiting_since_ : std::nullopt);
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
