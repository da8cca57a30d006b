#pragma once

#include <vector>

#include "command/doctor/Doctor.h"
#include "command/scheduled/Preconditions.h"

namespace doctor {

/// Whether the backup directory has room for the next backup; whether the clock can be right; what
/// killed runs have left; and what the last good backup of each kind is and how old. `start`: with
/// a directory. `begin` hears how far the backups have been read.
std::vector<Check> checkBackups(const scheduled::Start& start, const tarball::BeginProgress& begin);

}  // namespace doctor
