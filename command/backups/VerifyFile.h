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

/// Returns the first of the findings as text, "" for none.
std::string firstFinding(const tarball::Verdict& verdict);

/// Returns why the backup `path` of this kind is not good, in one line, "" when it is: it can be
/// read, is large enough to be restored, and is sound with the one archive, if any, that is
/// restored with it. `begin` as above.
std::string whyNotGood(const std::string& path, const Kind& kind,
                       const tarball::BeginProgress& begin = {});

}  // namespace backups
