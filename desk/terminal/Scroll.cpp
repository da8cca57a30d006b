#include "desk/terminal/Scroll.h"

#include <algorithm>

namespace desk::terminal {

int Scroll::top(int count, int page, int current) {
  count_ = count;
  page_ = std::max(1, page);
  current_ = current;
  if (follows_) top_ = std::clamp(top_, current - page_ + 1, current);
  top_ = std::clamp(top_, 0, std::max(0, count_ - page_));
  return top_;
}

bool Scroll::move(const std::string& action) {
  if (action == "up") {
    moveTo(top_ - 1);
  } else if (action == "down") {
    moveTo(top_ + 1);
  } else if (action == "left" || action == action::kPageUp) {
    moveTo(top_ - page_);
  } else if (action == "right" || action == action::kPageDown) {
    moveTo(top_ + page_);
  } else if (action == action::kFirst) {
    moveTo(0);
  } else if (action == action::kLast) {
    moveTo(count_);
  } else {
    return false;
  }
  return true;
}

/// Moves to a line. At the end the text is followed again, if that is where it is at.
void Scroll::moveTo(int top) {
  const int last = std::max(0, count_ - page_);
  top_ = std::clamp(top, 0, last);
  follows_ = top_ == last && current_ == count_ - 1;
}

}  // namespace desk::terminal
