#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace desk {

/// Returns the frame as a box of text, each line ended by a newline. `frame` is a frame as the JSON
/// output holds it.
std::string textFrame(const nlohmann::ordered_json& frame);

}  // namespace desk
