#include "desk/web/Board.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/SystemError.h"

namespace desk::web {
namespace {

constexpr std::size_t kMostLines = 500;

/// As many as a remote control's buffer would hold of a key that is held down.
constexpr std::size_t kMostWords = 64;

Board::Event event(const std::string& name, const std::string& data) {
  return std::make_shared<const std::string>("event: " + name + "\ndata: " + data + "\n\n");
}

base::Descriptor newEventDescriptor() {
  base::Descriptor descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!descriptor) throw base::SystemError(errno, "eventfd");
  return descriptor;
}

}  // namespace

Board::Board() : pressed_(newEventDescriptor()), news_(newEventDescriptor()) {}

void Board::showPicture(const std::string& data) {
  auto shown = event("picture", data);
  const std::lock_guard lock(mutex_);
  picture_ = std::move(shown);
  ++pictures_;
  tell();
}

void Board::addLine(const std::string& data) {
  auto added = event("log", data);
  const std::lock_guard lock(mutex_);
  last_lines_.push_back(std::move(added));
  if (last_lines_.size() > kMostLines) last_lines_.pop_front();
  ++lines_;
  tell();
}

void Board::end() {
  const std::lock_guard lock(mutex_);
  has_ended_ = true;
  tell();
}

void Board::tell() {
  eventfd_write(news_.number(), 1);
}

Board::Event Board::next(Seen& seen) {
  const std::lock_guard lock(mutex_);
  const std::uint64_t gone = lines_ - last_lines_.size();
  seen.lines = std::max(seen.lines, gone);
  if (seen.lines < lines_) return last_lines_[seen.lines++ - gone];
  if (std::exchange(seen.picture, pictures_) != pictures_) return picture_;
  if (has_ended_ && !std::exchange(seen.end, true)) return event("end", "null");
  return nullptr;
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
