#pragma once

#include "command/doctor/Doctor.h"
#include "host/include/OperatingSystem.h"

namespace doctor {

/// Whether the programs and scripts are there that backups and restores run.
Check checkTools(host::OperatingSystem& os);

/// Whether tar leaves out what is named by an exclusion after the file list, tried on files of its
/// own.
Check checkExclusions(host::OperatingSystem& os);

/// Whether the package manager answers.
Check checkPackageManager(host::OperatingSystem& os);

}  // namespace doctor
