#pragma once

#include "command/doctor/Doctor.h"
#include "command/scheduled/System.h"

namespace doctor {

/// Whether tar, with the module's commands, brings back files of its own as they were, with their
/// modes and links, and leaves out what an exclusion after the file list names.
Check checkArchiving(scheduled::System& os);

}  // namespace doctor
