#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarball {

/// Returns the names that a path is made of, without empty ones and "."; ".." is one of them.
std::vector<std::string_view> componentsOf(std::string_view path);

/// Returns the path of these components: with "/" between them, none before and behind.
std::string joined(const std::vector<std::string_view>& components);

/// Returns a path as base::escapeControls() shows it, with "..." for what is longer than any path
/// may be.
std::string shownPath(const std::string& path);

}  // namespace tarball
