#pragma once

#include <string>
#include <vector>

#include "base/Root.h"

namespace preview {

/// What a shell pattern of an absolute path stands for.
struct Expansion {
  std::vector<std::string> paths;       ///< what is there, in the shell's order
  std::vector<std::string> unreadable;  ///< directories and files of which nobody can say
};

/// Expands a pattern as a shell does whose root is `receiver`: component by component, a name that
/// begins with a dot only where the pattern has it.
Expansion expand(const base::Root& receiver, const std::string& pattern);

}  // namespace preview
