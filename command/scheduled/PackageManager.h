#pragma once

#include <string>

#include "command/scheduled/System.h"

namespace scheduled {

/// Asks the package manager what is installed. Returns why it does not answer, "" when it does.
/// Raises base::SystemError.
std::string whyNoPackages(System& os);

/// Whether the package manager answers and names no plugin as installed. Raises base::SystemError.
bool hasNoPlugins(System& os);

/// Returns why the file `list` does not name the plugins that are installed now, "" when it does.
/// Raises base::SystemError.
std::string whyNotComplete(System& os, const std::string& list);

}  // namespace scheduled
