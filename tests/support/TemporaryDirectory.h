#pragma once

#include <string>

namespace support {

/// A new, empty directory, which goes with all that is in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  /// Returns the full path of `name` in the directory.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

  /// Makes or replaces the file `name`.
  void write(const std::string& name, const std::string& content) const;

  /// Returns what the file `name` holds; raises std::runtime_error when it cannot be read.
  std::string read(const std::string& name) const;

  void makeDirectory(const std::string& name) const;
  void makeLink(const std::string& name, const std::string& target) const;

 private:
  std::string path_;
};

}  // namespace support
