#include "base/SystemError.h"

namespace base {

SystemError::SystemError(int number, const std::string& path)
    : std::system_error(number, std::generic_category()),
      line_(code().message() + ": '" + path + "'") {}

}  // namespace base
