#pragma once

#include <cstdlib>

namespace support {

/// Returns the number that the environment's variable `name` has, `usual` where it is not set.
inline unsigned numberOf(const char* name, unsigned usual) {
  const char* const asked = std::getenv(name);
  return asked ? static_cast<unsigned>(std::atoi(asked)) : usual;
}

}  // namespace support
