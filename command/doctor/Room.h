#pragma once

#include <string>

#include "command/doctor/Doctor.h"

namespace doctor {

/// Whether the medium of `directory` has room for all that the next backup could hold.
Check checkRoom(const std::string& directory);

}  // namespace doctor
