#pragma once

#include <cstdint>
#include <string_view>

namespace tarball {

/// The bytes of a tar archive, from the first to the last.
class Stream {
 public:
  virtual ~Stream() = default;

  /// Returns the next bytes, which stay until the next call; none at the end, once everything has
  /// been found right. Raises Damaged, and base::SystemError when a system call fails.
  virtual std::string_view read() = 0;

  /// Returns how many bytes of the file were needed for what has been read.
  virtual std::uint64_t compressed() const = 0;
};

}  // namespace tarball
