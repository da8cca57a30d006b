#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tarball {

/// Remembers where an archive has brought symbolic links, within 4 MiB of memory. Paths are those
/// that joined() returns.
class BroughtLinks {
 public:
  /// Takes note of a symbolic link. Returns false when there is no room for it.
  bool add(const std::string& path);

  /// Whether the archive has brought a link with this path.
  bool contains(std::string_view path) const { return paths_.contains(path); }

  /// Whether one of the directories that the path lies in is such a link.
  bool leadTo(std::string_view path) const;

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  std::unordered_set<std::string, Hash, std::equal_to<>> paths_;
  std::size_t bytes_ = 0;
};

}  // namespace tarball
