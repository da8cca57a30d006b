#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace desk {

/// Returns the action that `key` of the remote control has in the action context `context`; nothing
/// when the context does not know the key.
std::optional<std::string_view> actionOf(const std::string& context, const std::string& key);

}  // namespace desk
