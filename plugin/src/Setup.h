#pragma once

#include "host/include/Module.h"

namespace stowline {

/// Loads the module: binds the names that it uses, attaches its setting to the configuration tree,
/// and defines its functions and classes. Called once, before anything else. Raises what a binding
/// raises, and Error when "config.plugins.qorpanel" is not there.
void load(const host::Module& module);

/// Returns the one setting, `backuprestorepath`: the medium that the user has chosen, such as
/// "/media/hdd/".
host::Object mediumSetting(const host::Module& module);

/// Returns the path of the backup directory on that medium, whether it is there or not.
host::Object backupPath(const host::Module& module);

/// Returns the branch of the configuration tree that holds it.
host::Object moduleSettings(const host::Module& module);

}  // namespace stowline
