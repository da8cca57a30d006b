#include "desk/frontend/Countdown.h"

#include <algorithm>

namespace desk {

void Countdown::show(const Frame& frame, Time now) {
  const std::optional<int> timeout = timeoutOf(frame);
  if (!timeout) {
    *this = {};
  } else if (box_ != frame.top()->id) {
    box_ = frame.top()->id;
    end_ = now + std::chrono::seconds(*timeout);
  }
}

std::optional<int> Countdown::secondsLeft(Time now) const {
  if (!end_) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::seconds>(*end_ - now).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

}  // namespace desk
