#include "WebPlayer.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include "native/OsError.h"
#include "native/ShownText.h"

namespace desk::web {
namespace {

/// Returns what a screen reader is to say of a frame when its screen comes up or its text changes.
std::string announcementOf(const Channel::Message& frame) {
  std::string text = frame.at("title");
  if (frame.contains("type")) text += ". " + frame.at("text").get<std::string>();
  const auto& rows = frame.at("rows");
  const auto selected = frame.at("selected").get<std::size_t>();
  if (selected < rows.size()) {
    for (const auto& part : rows.at(selected)) text += ". " + part.get<std::string>();
  }
  return text;
}

}  // namespace

void WebPlayer::play(Supervisor& supervisor) {
  Conversation gui(supervisor);
  addNotices();
  for (;;) {
    wait(supervisor, gui);
    if (gui_has_message_) {
      gui.takeMessages(
          [this](Channel::Message frame, bool /*is_answer*/) { takeFrame(std::move(frame)); });
    }
    if (has_opened_ && !isOpen()) return;
    pressWords(gui);
    gui.keepTime(Clock::now(), countdown_.secondsLeft(Clock::now()));
    showPicture(gui);
  }
}

/// Waits until a word is pressed that can be handed over, a message has come, or something that is
/// shown changes by itself.
void WebPlayer::wait(const Supervisor& supervisor, const Conversation& gui) {
  const Time now = Clock::now();
  const auto patience = gui.untilDue(now, countdown_.secondsLeft(now).has_value());
  std::array<pollfd, 2> watched = {
      pollfd{.fd = supervisor.descriptor(), .events = POLLIN, .revents = 0},
      pollfd{.fd = board_.descriptor(),
             .events = static_cast<short>(gui.isFree() ? POLLIN : 0),
             .revents = 0}};
  if (poll(watched.data(), watched.size(), static_cast<int>(patience.count())) < 0 &&
      errno != EINTR) {
    throw native::osError(errno, "poll");
  }
  gui_has_message_ = watched[0].revents != 0;
}

void WebPlayer::takeFrame(Channel::Message frame) {
  frame_ = std::move(frame);
  ++frames_;
  countdown_.show(frame_, Clock::now());
  if (!has_opened_ && !isOpen()) {
    throw std::runtime_error("the menu does not open: " + last_error_);
  }
  has_opened_ = true;
}

void WebPlayer::pressWords(Conversation& gui) {
  if (!has_opened_ || !gui.isFree()) return;
  if (const auto word = board_.takeWord()) {
    said_.clear();
    gui.send(*word);
  }
}

void WebPlayer::showPicture(const Conversation& gui) {
  if (!has_opened_) return;
  const Time now = Clock::now();
  const auto seconds_left = countdown_.secondsLeft(now);
  const bool is_busy = gui.busySince(now).has_value();
  const Drawn drawn{frames_, seconds_left, is_busy};
  if (drawn == drawn_) return;
  drawn_ = drawn;
  board_.showPicture({{"svg", drawing_.draw(frame_, seconds_left)},
                      {"title", frame_.at("title")},
                      {"announcement", announcementOf(frame_)},
                      {"state", is_busy ? "The receiver is busy …" : said_}});
  addNotices();
}

/// Adds what the drawing has noticed since it was asked last.
void WebPlayer::addNotices() {
  const auto& lines = drawing_.notices().lines();
  for (; notices_ < lines.size(); ++notices_) {
    addLine("notice", "skin: " + native::shownLine(lines[notices_]));
  }
}

void WebPlayer::addLine(const char* kind, const std::string& text) {
  board_.addLine({{"kind", kind}, {"text", text}});
}

void WebPlayer::onEvent(const Channel::Message& event) {
  const std::string name = event.at("event");
  if (name == "gui-killed") {
    while (board_.takeWord()) {
    }
    addLine("notice", "the GUI was killed");
  } else if (name == "gui-started") {
    has_opened_ = false;
    said_ = "The GUI was killed and has been started again.";
    addLine("notice", "the GUI was started again");
  } else {
    last_error_ = event.at("text");
    said_ = "Error: " + last_error_;
    addLine("error", last_error_);
  }
}

}  // namespace desk::web
