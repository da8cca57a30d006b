#pragma once

#include "host/include/IpkgEvent.h"
#include "host/include/Method.h"

namespace host {

/// The package-manager component: runs opkg without blocking and reports by callback.
class IpkgComponent {
 public:
  virtual ~IpkgComponent() = default;

  /// Registers `callback` for every event of the commands to come.
  virtual void addCallback(const IpkgCallback& callback) = 0;

  /// Starts `command` and returns; its end is reported as EVENT_DONE or EVENT_ERROR.
  virtual void startCmd(IpkgCommand command) = 0;
};

/// The asynchronous command runner. The screens create one and run nothing through it.
class ComConsole {
 public:
  virtual ~ComConsole() = default;
};

}  // namespace host
