#pragma once

#include <string>

#include "command/archive/GzipFile.h"
#include "command/archive/Verify.h"
#include "command/backups/Kind.h"

namespace backups {

/// Reads a backup to its end and says whether it is sound: an archive that holds what its kind may
/// hold (of an unknown kind, what any kind may hold), or a list of package names. `begin`
/// may be given to hear how far an archive has been read. Raises base::SystemError when it
/// cannot be read.
tarball::Verdict verifyFile(const std::string& path, const Kind& kind,
                            const tarball::BeginProgress& begin = {});

/// Whether the backup `path` of this kind can be read and is sound, and so is every archive beside
/// it that is restored with it. `begin` as above.
bool isSoundWithCompanions(const std::string& path, const Kind& kind,
                           const tarball::BeginProgress& begin = {});

}  // namespace backups
