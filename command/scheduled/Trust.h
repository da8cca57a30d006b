#pragma once

#include <string>
#include <vector>

#include "command/archive/GzipFile.h"
#include "command/archive/Verify.h"
#include "command/backups/Kind.h"
#include "command/scheduled/Preconditions.h"
#include "host/plain/Host.h"

namespace scheduled {

/// Whether the receiver's restore list shows a file of this name, or at this path. `kind` is one of
/// the kinds that have a list.
bool isListed(const plain::Host& host, const std::string& path, const backups::Kind& kind);

/// Raises std::runtime_error, in one line, unless of every kind of which housekeeping would delete
/// a backup a good one stays. That is one of which backups::whyNotGood() says nothing and that the
/// receiver's restore list shows. A list of packages is to name some, too; it need not where those
/// that go name none. Returns why scheduled backups cannot be looked at: they are taken to be no
/// good. `begin` hears how far they have been read.
std::vector<std::string> requireGoodSurvivors(const Start& start,
                                              const tarball::BeginProgress& begin);

}  // namespace scheduled
