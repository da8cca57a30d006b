#include "desk/web/WebPlayer.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "host/native/OsError.h"
#include "host/native/ShownText.h"

namespace desk::web {
namespace {

/// Returns the last line of a text that is not empty.
std::string lastLineOf(const std::string& text) {
  const std::size_t end = text.find_last_not_of('\n') + 1;
  const std::size_t begin = text.substr(0, end).rfind('\n') + 1;
  return text.substr(begin, end - begin);
}

/// Returns what a screen reader is to say of a frame when its screen comes up or changes: its title
/// and texts, what is going on, and the row with the cursor.
std::string announcementOf(const Channel::Message& frame) {
  std::vector<std::string> parts = {frame.at("title")};
  for (const auto& [name, text] : frame.at("widgets").items()) {
    if (name != "title" && !name.starts_with("key_")) parts.push_back(text);
  }
  const bool is_console = frame.contains("text") && frame.contains("running");
  if (is_console) {
    parts.push_back(lastLineOf(frame.at("text")));
  } else if (frame.contains("text")) {
    parts.push_back(frame.at("text"));
  }
  for (const auto& package : frame.value("packages", Channel::Message::array())) {
    if (package.at("state") == "running") parts.push_back(package.at("name"));
  }
  if (frame.contains("running")) parts.emplace_back(frame.at("running") ? "running" : "finished");
  const auto& rows = frame.at("rows");
  const auto selected = frame.at("selected").get<std::size_t>();
  if (selected < rows.size())
    parts.insert(parts.end(), rows.at(selected).begin(), rows.at(selected).end());
  std::string announcement;
  for (const std::string& part : parts) {
    if (!part.empty()) announcement += (announcement.empty() ? "" : ". ") + part;
  }
  return announcement;
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
