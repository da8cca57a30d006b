#pragma once

#include <functional>
#include <string>

namespace archive_test {

/// What a piece of work has come to, and the memory it took.
struct Measured {
  std::string result;
  long peak = 0;  ///< KiB, with the whole program's
};

/// Does the work in a process of its own. What it raises is its result.
Measured measured(const std::function<std::string()>& work);

/// Whether memory is what it is without tests: the address sanitizer keeps much of what is freed.
bool canMeasureMemory();

}  // namespace archive_test
