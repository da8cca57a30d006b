#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace desk {

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;

/// Counts the time-out of the shown box down, in real time.
class Countdown {
 public:
  /// Takes a frame that is shown from `now` on. The count begins anew when the frame shows another
  /// box than before, and after a word that closes every box.
  void show(const nlohmann::ordered_json& frame, Time now);

  /// Returns the seconds left, rounded up; nothing when no box with a time-out is shown.
  std::optional<int> secondsLeft(Time now) const;

 private:
  std::string box_;
  std::optional<Time> end_;
};

}  // namespace desk
