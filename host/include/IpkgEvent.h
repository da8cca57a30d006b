#pragma once

namespace host {

/// Events of a running package-manager command.
enum class IpkgEvent { EVENT_DONE, EVENT_ERROR, EVENT_OTHER };

/// Commands of the package manager.
enum class IpkgCommand { CMD_INSTALL, CMD_UPDATE };

}  // namespace host
