#include "desk/web/Board.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>

#include "base/SystemError.h"

namespace desk::web {
namespace {

constexpr std::size_t kMostLines = 500;

/// As many as a remote control's buffer would hold of a key that is held down.
constexpr std::size_t kMostWords = 64;

std::string event(const std::string& name, const std::string& data) {
  return "event: " + name + "\ndata: " + data + "\n\n";
}

}  // namespace

Board::Board() : pressed_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!pressed_) throw base::SystemError(errno, "eventfd");
}

void Board::showPicture(const nlohmann::ordered_json& picture) {
  std::string text = picture.dump();
  const std::lock_guard lock(mutex_);
  picture_ = std::move(text);
  svg_ = picture.at("svg");
  ++pictures_;
  changed_.notify_all();
}

std::string Board::svg() {
  const std::lock_guard lock(mutex_);
  return svg_;
}

void Board::addLine(const nlohmann::ordered_json& line) {
  std::string text = line.dump();
  const std::lock_guard lock(mutex_);
  last_lines_.push_back(std::move(text));
  if (last_lines_.size() > kMostLines) last_lines_.pop_front();
  ++lines_;
  changed_.notify_all();
}

void Board::end() {
  const std::lock_guard lock(mutex_);
  has_ended_ = true;
  changed_.notify_all();
}

std::optional<std::string> Board::nextEvents(Seen& seen, std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, patience, [&] {
    return has_ended_ || seen.picture != pictures_ || seen.lines != lines_;
  });
  std::string events = newLines(seen);
  if (seen.picture != pictures_) {
    events += event("picture", picture_);
    seen.picture = pictures_;
  }
  if (events.empty() && has_ended_) return std::nullopt;
  return events.empty() ? event("alive", "null") : events;
}

/// Returns the lines that have not been seen, as far as they are still kept.
std::string Board::newLines(Seen& seen) const {
  const auto count = std::min<std::uint64_t>(lines_ - seen.lines, last_lines_.size());
  std::string lines;
  for (std::size_t at = last_lines_.size() - count; at < last_lines_.size(); ++at) {
    lines += (lines.empty() ? "[" : ",") + last_lines_[at];
  }
  seen.lines = lines_;
  return lines.empty() ? "" : event("log", lines + "]");
}

bool Board::press(const std::string& word) {
  const std::lock_guard lock(mutex_);
  if (words_.size() >= kMostWords) return false;
  words_.push_back(word);
  return eventfd_write(pressed_.number(), 1) == 0;
}

std::optional<std::string> Board::takeWord() {
  const std::lock_guard lock(mutex_);
  if (words_.empty()) return std::nullopt;
  std::string word = std::move(words_.front());
  words_.pop_front();
  eventfd_t count = 0;
  if (words_.empty()) eventfd_read(pressed_.number(), &count);
  return word;
}

}  // namespace desk::web
