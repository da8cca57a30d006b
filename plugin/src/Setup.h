#pragma once

#include <optional>
#include <string>

#include "host/include/Host.h"

namespace stowline {

/// The module's branch of the configuration tree.
inline constexpr const char* kSubsection = "plugins.qorpanel.stowline";

/// Loads the module: binds every host name that it uses and attaches its configuration subsection
/// with its one key. Called once per GUI process, before anything else. Raises what a binding
/// raises, and the configuration tree's error when "plugins.qorpanel" is not there.
void load(host::Host& host);

/// Returns the one setting, `backuprestorepath`: the medium that the user has chosen, such as
/// "/media/hdd/". The reference is good until the next use of the configuration tree.
host::ConfigText& backupRestorePathSetting(host::Host& host);

/// Returns the backup directory on the chosen medium, without a trailing "/", and creates it when
/// it is missing. Returns nothing when it cannot be created; raises only what reading the setting
/// raises.
std::optional<std::string> getBackupRestorePath(host::Host& host);

/// Returns the local time as a name stamp to the minute, such as "20240305_07-04". Raises what the
/// clock raises.
std::string getDateTime(host::Host& host);

}  // namespace stowline
