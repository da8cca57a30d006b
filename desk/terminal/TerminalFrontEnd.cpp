#include "desk/terminal/TerminalFrontEnd.h"

#include <poll.h>
#include <unistd.h>

#include <stdexcept>

#include "desk/protocol/Json.h"

namespace desk::terminal {
namespace {

/// How much of what is pressed ahead of a busy GUI is read.
constexpr std::size_t kMostPressed = 32;

}  // namespace

TerminalFrontEnd::TerminalFrontEnd(std::optional<Theme> theme, const std::filesystem::path& record)
    : record_(record), display_(theme) {}

void TerminalFrontEnd::show(const Frame& frame, bool is_answer) {
  if (record_ && is_answer) record_.append(jsonOf(frame));
  television_.show(frame);
  has_frame_ = true;
}

/// Does what has been pressed, in order, up to the next word.
std::optional<Word> TerminalFrontEnd::nextWord() {
  while (!pressed_.empty()) {
    auto word = parseWord(television_.take(pressed_.front()));
    pressed_.pop_front();
    if (!word) continue;
    television_.setCommand("");
    return word;
  }
  return std::nullopt;
}

pollfd TerminalFrontEnd::input(bool /*is_free*/) const {
  return {.fd = STDIN_FILENO, .events = static_cast<short>(takesKeys() ? POLLIN : 0), .revents = 0};
}

/// Whether more keys are read now; others stay in the terminal's own buffer.
bool TerminalFrontEnd::takesKeys() const {
  return pressed_.size() < kMostPressed;
}

void TerminalFrontEnd::takeInput(short events) {
  if ((events & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
    throw std::runtime_error("the terminal has gone");
  }
  // What a key or a click means depends on what is shown.
  showPicture();
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

void TerminalFrontEnd::refresh(const Moment& moment) {
  moment_ = moment;
  showPicture();
}

void TerminalFrontEnd::showPicture() {
  if (!has_frame_) return;
  picture_ = television_.picture(display_.size(), moment_);
  display_.show(picture_);
}

void TerminalFrontEnd::onEvent(const Event& event) {
  record_.append(jsonOf(event));
  switch (event.kind) {
    case Event::Kind::gui_killed:
      pressed_.clear();
      display_.dropKeys();
      television_.log("*** ", "the GUI was killed", Ink::notice);
      break;
    case Event::Kind::gui_started:
      has_frame_ = false;
      television_.log("*** ", "the GUI was started again", Ink::notice);
      television_.say("The GUI was killed and has been started again.", Ink::notice);
      break;
    case Event::Kind::error:
      television_.log("*** ", event.text, Ink::error);
      television_.say("Error: " + event.text, Ink::error);
      break;
  }
}

void TerminalFrontEnd::onLogLine(const std::string& line) {
  television_.log("", line, Ink::text);
}

void TerminalFrontEnd::onCommand(const std::string& command) {
  television_.log("$ ", command, Ink::description);
  television_.setCommand(command);
}

}  // namespace desk::terminal
