#pragma once

#include "command/doctor/Doctor.h"
#include "command/scheduled/System.h"
#include "host/plain/System.h"

namespace doctor {

/// Whether the programs and scripts are there that backups and restores run.
Check checkTools(plain::System& os);

/// Whether the package manager answers.
Check checkPackageManager(scheduled::System& os);

}  // namespace doctor
