#pragma once

#include <string>
#include <vector>

#include "command/archive/GzipFile.h"
#include "command/archive/Verify.h"
#include "command/backups/Kind.h"
#include "command/scheduled/Preconditions.h"
#include "host/plain/Host.h"

namespace scheduled {

/// Whether the receiver's restore list takes the file `path` of the backup directory. `kind` is one
/// of the kinds that have a list. Raises base::SystemError when its size cannot be told.
bool isRestorable(const plain::Host& host, const std::string& path, const backups::Kind& kind);

/// Raises std::runtime_error, in one line, unless of every kind of which housekeeping would delete
/// a backup a good one stays: one that is sound with all that is restored with it, and that the
/// receiver's restore list takes; a list of packages that names some, unless those that go name
/// none. Returns why scheduled backups cannot be looked at: they are taken to be no good. `begin`
/// hears how far they have been read.
std::vector<std::string> requireGoodSurvivors(const Start& start,
                                              const tarball::BeginProgress& begin);

}  // namespace scheduled
