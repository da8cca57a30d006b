#pragma once

#include <vector>

#include "command/doctor/Doctor.h"
#include "host/plain/Host.h"

namespace doctor {

/// Whether the medium is mounted, can be written, and has room for the next backup; what the last
/// good backup of each kind is and how old; and whether the clock can be right. `begin` hears how
/// far the backups have been read.
std::vector<Check> checkBackups(const plain::Host& host, const tarball::BeginProgress& begin);

}  // namespace doctor
