#include "command/archive/Paths.h"

#include <climits>

#include "base/Escape.h"

namespace tarball {
std::vector<std::string_view> componentsOf(std::string_view path) {
  std::vector<std::string_view> components;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t slash = path.find('/', start);
    const std::size_t end = slash == std::string_view::npos ? path.size() : slash;
    const std::string_view name = path.substr(start, end - start);
    if (!name.empty() && name != ".") components.push_back(name);
    start = end + 1;
  }
  return components;
}

std::string joined(const std::vector<std::string_view>& components) {
  std::string path;
  for (const std::string_view name : components) {
    if (!path.empty()) path += '/';
    path += name;
  }
  return path;
}

std::string shownPath(const std::string& path) {
  if (path.size() > PATH_MAX) return shownPath(path.substr(0, PATH_MAX)) + "...";
  return base::escapeControls(path);
}

}  // namespace tarball
