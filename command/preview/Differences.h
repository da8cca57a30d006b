#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "command/preview/Preview.h"

namespace preview {

/// The largest file whose difference is shown, in bytes.
inline constexpr std::uint64_t kLargestText = 256 * 1024;

/// When all differences together are larger than this, in bytes, no further one is shown.
inline constexpr std::size_t kMostText = 16 * 1024 * 1024;

/// The difference that a restore makes to one file.
struct Difference {
  std::string path;
  std::string text;    ///< unified, with its two header lines
  std::string reason;  ///< why there is no text; "" when there is

  bool operator==(const Difference&) const = default;
};

/// Calls `take` with the difference of every file whose content the restore changes, brings or
/// deletes: first what it brings or changes, then what it deletes. What has only other permissions
/// makes none. Raises base::SystemError for an archive that cannot be read.
void findDifferences(const Preview& preview, const std::function<void(const Difference&)>& take);

}  // namespace preview
