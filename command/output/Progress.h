#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace output {

/// A bar with size and rate on standard error, where that is a terminal; nothing elsewhere. It goes
/// when it has done its work.
class Progress {
 public:
  /// `name`: what is being read; `size`: its bytes. `is_wanted`: whether there is to be a bar.
  Progress(std::string name, std::uint64_t size, bool is_wanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// So many bytes have been read by now.
  void show(std::uint64_t done);

 private:
  using Clock = std::chrono::steady_clock;

  std::string name_;
  std::uint64_t size_;
  bool is_shown_;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point last_ = begin_;
  bool has_bar_ = false;
};

/// Returns what begins a bar: it takes the path and the size in bytes of a file, and returns what
/// takes how many have been read; with that, the bar goes. `are_wanted`: whether there are to be
/// bars.
std::function<std::function<void(std::uint64_t)>(const std::string& path, std::uint64_t size)> bars(
    bool are_wanted);

}  // namespace output
