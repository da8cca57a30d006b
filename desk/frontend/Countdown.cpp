#include "desk/frontend/Countdown.h"

#include <algorithm>

namespace desk {

void Countdown::show(const Frame& frame, Time now) {
  const LayerView* const top = frame.top();
  const auto* const message = top ? top->as<MessageContent>() : nullptr;
  if (!message) {
    *this = {};
  } else if (box_ != top->id) {
    box_ = top->id;
    end_.reset();
    if (message->timeout > 0) end_ = now + std::chrono::seconds(message->timeout);
  }
}

std::optional<int> Countdown::secondsLeft(Time now) const {
  if (!end_) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::seconds>(*end_ - now).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

}  // namespace desk
