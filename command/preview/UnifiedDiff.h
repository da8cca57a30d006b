#pragma once

#include <optional>
#include <string>

namespace preview {

/// The most lines that two files may have between the first and the last one that differ: more
/// would take too long to compare.
inline constexpr std::size_t kMostLines = 20000;

/// Returns the hunks of the unified difference between two texts, with three lines of context, as
/// diff(1) has them; "" when there is none, nothing when it would take too long.
std::optional<std::string> unifiedHunks(const std::string& before, const std::string& after);

}  // namespace preview
