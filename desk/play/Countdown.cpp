#include "desk/play/Countdown.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace desk {
namespace {

bool closesBoxes(const std::string& word) {
  return word == "ok" || word == "exit" || word == "timeout";
}

}  // namespace

void Countdown::show(const nlohmann::ordered_json& frame, Time now) {
  std::string box;
  if (frame.contains("timeout")) {
    for (const char* key : {"screen", "title", "type", "text", "timeout"}) {
      box += frame.at(key).dump() + " ";
    }
  }
  const bool is_new = box != box_ || closesBoxes(frame.at("key"));
  box_ = box;
  if (!is_new) return;
  const int timeout = frame.value("timeout", 0);
  end_.reset();
  if (timeout > 0) end_ = now + std::chrono::seconds(timeout);
}

std::optional<int> Countdown::secondsLeft(Time now) const {
  if (!end_) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::seconds>(*end_ - now).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

}  // namespace desk
