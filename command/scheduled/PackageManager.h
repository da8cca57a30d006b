#pragma once

#include <string>

#include "host/include/OperatingSystem.h"

namespace scheduled {

/// Asks the package manager what is installed. Returns why it does not answer, "" when it does.
/// Raises host::Error ("OSError").
std::string whyNoPackages(host::OperatingSystem& os);

/// Returns why the file `list` does not name the plugins that are installed now, "" when it does.
/// Raises host::Error ("OSError").
std::string whyNotComplete(host::OperatingSystem& os, const std::string& list);

}  // namespace scheduled
