#pragma once

#include <string>

#include "host/plain/Error.h"

namespace native {

/// Returns the error of a failed system call: "OSError" with `number` (an errno) and `path`.
plain::Error osError(int number, const std::string& path);

/// Returns what went wrong for a person: the message without the number that the framework's
/// messages begin with ("[Errno 2] ").
std::string reasonOf(const plain::Error& error);

}  // namespace native
