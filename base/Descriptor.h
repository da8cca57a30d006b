#pragma once

#include <unistd.h>

#include <utility>

namespace base {

/// Owns an open file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { reset(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }

  /// The descriptor's number, negative when there is none.
  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

  /// Gives the descriptor away: whoever takes the number closes it.
  int release() { return std::exchange(number_, -1); }

  /// Closes the descriptor, if there is one.
  void reset() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }

 private:
  int number_ = -1;
};

}  // namespace base
