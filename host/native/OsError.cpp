#include "OsError.h"

#include <system_error>

namespace native {

host::Error osError(int number, const std::string& path) {
  const std::string reason = std::generic_category().message(number);
  return {"OSError", "[Errno " + std::to_string(number) + "] " + reason + ": '" + path + "'",
          number};
}

}  // namespace native
