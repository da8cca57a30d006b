#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/Descriptor.h"

namespace base {

/// The files below a directory as a process finds them whose root it is, to be read only: the
/// absolute target of a link, and "..", stay inside (RESOLVE_IN_ROOT in openat2(2)). Paths are
/// absolute. Every operation raises SystemError for what it cannot read.
class Root {
 public:
  explicit Root(const std::filesystem::path& dir);

  /// Opens the file or directory `path` for reading.
  Descriptor open(const std::string& path) const;

  /// Return what stat(2) and lstat(2) say of `path`, whose last name is not "..", nothing where it
  /// names nothing.
  std::optional<struct stat> status(const std::string& path) const;
  std::optional<struct stat> linkStatus(const std::string& path) const;

  /// Returns the target of the symbolic link `path`, as it stands.
  std::string linkTarget(const std::string& path) const;

  /// Returns the path of the directory `path` without any link in it; nothing where there is none,
  /// or where it cannot be reached.
  std::optional<std::string> realPath(const std::string& path) const;

  /// Returns the names in the directory `path` without "." and "..", in the directory's own order.
  std::vector<std::string> names(const std::string& path) const;

 private:
  Descriptor resolve(const std::string& path, int flags) const;

  Descriptor dir_;
  bool is_whole_system_;
  mutable std::string last_parent_;    ///< the directory that was asked for last ...
  mutable Descriptor last_directory_;  ///< ... which mostly holds what is asked for next
};

}  // namespace base
