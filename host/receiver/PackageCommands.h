#pragma once

#include <vector>

#include "host/include/Dialogs.h"
#include "host/receiver/Components.h"

namespace receiver {

/// Returns the commands as the framework's package screen takes them: pairs of
/// IpkgComponent.CMD_INSTALL and {"package": name}.
Reference packageCommands(const Names& names, const std::vector<host::PackageCommand>& commands);

/// Returns the commands of such a list. Raises TypeError, or what looking into it raises, for
/// anything else.
std::vector<host::PackageCommand> packageCommandsOf(const Names& names, PyObject* list);

}  // namespace receiver
