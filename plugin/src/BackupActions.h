#pragma once

#include "host/include/Module.h"

namespace stowline {

/// The backup engine: names and writes the backup files and deletes old scheduled ones. One object
/// is one backup run: its stamp names every file that it writes.
extern const host::Class kBackupActions;

/// Returns the paths of the files that the skins' user has made, as the engine finds them: a list.
host::Object userFiles(const host::Object& engine);

}  // namespace stowline
