#include "OsError.h"

#include <cstring>

namespace native {

host::Error osError(int number, const std::string& path) {
  const std::string reason = std::strerror(number);
  return {"OSError", "[Errno " + std::to_string(number) + "] " + reason + ": '" + path + "'",
          number};
}

}  // namespace native
