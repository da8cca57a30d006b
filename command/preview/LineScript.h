#pragma once

#include <vector>

namespace preview {

/// A step from one sequence of lines to another.
enum class Edit { remove, add, keep };

/// Returns the steps that turn the sequence `before` into `after`. The time that it takes grows
/// with the number of steps that do not keep, squared.
std::vector<Edit> lineScript(const std::vector<int>& before, const std::vector<int>& after);

}  // namespace preview
