#pragma once

#include <string>

#include "host/plain/System.h"

namespace plain {

/// The file that holds the receiver's model name.
inline constexpr const char* kModelFile = "/proc/stb/info/model";

/// Returns the receiver's model, without the line's end. Raises what reading the file raises.
std::string readModel(System& system);

/// Whether `name` can be a model: of letters, digits, "-" and "+", for it becomes a part of file
/// names that a shell is handed.
bool isModel(const std::string& name);

}  // namespace plain
