#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "base/Descriptor.h"

namespace base {

/// Returns a descriptor that is readable once the child `process` has ended (pidfd_open(2)). Raises
/// SystemError.
Descriptor openProcess(pid_t process);

/// Returns the words of a command as exec(3) takes them, null at the end. They stay in `words`.
std::vector<char*> argumentsOf(const std::vector<std::string>& words);

}  // namespace base
