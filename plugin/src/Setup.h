#pragma once

#include <optional>
#include <string>

#include "host/Host.h"

namespace stowline {

/// The setting that names the medium: `config.plugins.qorpanel.stowline.backuprestorepath`.
inline constexpr const char* kSubsection = "plugins.qorpanel.stowline";
inline constexpr const char* kBackupRestorePath = "backuprestorepath";

/// Loads the module: binds every host name that it uses and attaches its configuration subsection
/// with its one key. Called once per GUI process, before anything else. Raises what a binding
/// raises, and the configuration tree's error when "plugins.qorpanel" is not there.
void load(host::Host& host);

/// Returns the medium that the user has chosen, as it is stored.
std::string storedMedium(host::Host& host);

/// Returns the backup directory on the chosen medium, without a trailing "/", and creates it when
/// it is missing. Returns nothing when it cannot be created; raises only what reading the setting
/// raises.
std::optional<std::string> getBackupRestorePath(host::Host& host);

/// Returns the local time as a name stamp to the minute, such as "20240305_07-04". Raises what the
/// clock raises.
std::string getDateTime(host::Host& host);

/// Said when the chosen medium has no usable backup directory.
inline constexpr const char* kNotWriteable =
    "Sorry, your backup destination is not writeable.\n\nPlease choose another one.";

}  // namespace stowline
