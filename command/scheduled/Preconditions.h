#pragma once

#include <optional>
#include <string>

#include "command/scheduled/Medium.h"
#include "command/scheduled/RunLock.h"
#include "command/scheduled/System.h"
#include "host/plain/Host.h"

namespace scheduled {

/// What a scheduled backup begins with, as far as its preconditions have been looked at.
struct Start {
  System& system;
  plain::Host& host;  ///< with the module loaded
  std::optional<RunLock> lock = {};
  std::string directory = {};              ///< the backup directory, "" while there is none
  std::optional<HeldDirectory> held = {};  ///< that directory
  host::Object engine = {};                ///< a BackupActions
  std::string stamp = {};                  ///< its local time, "2024-03-05 07:04"
};

/// Something without which a scheduled backup does not begin.
struct Precondition {
  const char* name;
  bool is_for_all;  ///< whether there can be no backup by hand without it, either

  /// Adds to the start. Returns what was found, in words; "" for nothing, which is when an earlier
  /// one has failed without which this one cannot be looked at. Raises std::exception, in one line,
  /// when a backup cannot begin.
  std::string (*require)(Start& start);
};

/// All of them, in the order in which they are looked at.
extern const Precondition kPreconditions[4];

}  // namespace scheduled
