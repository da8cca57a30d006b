#pragma once

#include <string>

#include "archive/GzipFile.h"
#include "archive/Verify.h"
#include "backups/FileKind.h"
#include "host/Host.h"

namespace scheduled {

/// Raises std::runtime_error, in one line, when the receiver's model cannot be a part of names, or
/// when the backup directory has a scheduled backup whose stamp is that of `engine_stamp` or later:
/// it would be replaced, or be taken for the newer one.
void requireNewestStamp(host::Host& host, const std::string& directory,
                        const std::string& engine_stamp);

/// Whether the receiver's restore list takes the file `name` of the backup directory. `kind` is
/// one of the kinds that have a list.
bool isRestorable(host::Host& host, const std::string& name, backups::FileKind kind);

/// Raises std::runtime_error, in one line, unless of every kind of which housekeeping would delete
/// a backup a sound one stays.
void requireSoundSurvivors(host::Host& host, const std::string& directory);

}  // namespace scheduled
