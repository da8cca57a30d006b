#pragma once

#include <cstdint>
#include <optional>

#include "desk/frontend/FrontEnd.h"

namespace desk {

/// Counts the time-out of the shown box down, in real time.
class Countdown {
 public:
  /// Takes a frame that is shown from `now` on. The count begins anew with every other box.
  void show(const Frame& frame, Time now);

  /// Returns the seconds left, rounded up; nothing when no box with a time-out is shown.
  std::optional<int> secondsLeft(Time now) const;

 private:
  std::optional<std::uint64_t> box_;
  std::optional<Time> end_;
};

}  // namespace desk
