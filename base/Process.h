#pragma once

#include <sys/types.h>

#include "base/Descriptor.h"

namespace base {

/// Returns a descriptor that is readable once the child `process` has ended (pidfd_open(2)). Raises
/// SystemError.
Descriptor openProcess(pid_t process);

}  // namespace base
