#pragma once

#include <string>

#include "host/Error.h"

namespace native {

/// Returns the error of a failed system call: "OSError" with `number` (an errno) and `path`.
host::Error osError(int number, const std::string& path);

}  // namespace native
