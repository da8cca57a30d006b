#pragma once

#include <string>

#include "base/Descriptor.h"

namespace base {

/// Opens `path` with the flags of open(2) as openat2(2) does with RESOLVE_IN_ROOT: as a process
/// finds it whose root is the directory `root`. Goes name by name, for kernels before 5.6, which do
/// not have that call. Returns no descriptor, and errno, for what cannot be opened.
Descriptor openBelow(int root, const std::string& path, int flags);

}  // namespace base
