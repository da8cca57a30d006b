#pragma once

#include <nlohmann/json_fwd.hpp>

#include "command/preview/Differences.h"

namespace preview {

/// Return the same as printText() prints, as JSON. The members' "size" is 0 for all but files.
nlohmann::ordered_json jsonOf(const Preview& preview);
nlohmann::ordered_json jsonOf(const Difference& difference);

}  // namespace preview
