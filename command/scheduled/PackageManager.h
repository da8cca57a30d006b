#pragma once

#include <string>

#include "host/plain/System.h"

namespace scheduled {

/// Asks the package manager what is installed. Returns why it does not answer, "" when it does.
/// Raises base::SystemError.
std::string whyNoPackages(plain::System& os);

/// Whether the package manager answers and names no plugin as installed. Raises base::SystemError.
bool hasNoPlugins(plain::System& os);

/// Returns why the file `list` does not name the plugins that are installed now, "" when it does.
/// Raises base::SystemError.
std::string whyNotComplete(plain::System& os, const std::string& list);

}  // namespace scheduled
