#pragma once

#include <cstdint>
#include <string>

namespace tarball {

/// What a member of an archive is.
enum class Type {
  kFile,
  kDirectory,
  kSymbolicLink,
  kHardLink,
  kDevice,
  kFifo,
  kOther,
};

/// What an archive says of one member. Names are the bytes that the archive has.
struct Member {
  std::string path;
  Type type = Type::kOther;
  std::uint64_t size = 0;     ///< bytes
  unsigned mode = 0;          ///< permissions, with the set-user-ID, set-group-ID and sticky bits
  std::int64_t modified = 0;  ///< seconds since 1970
  std::int64_t uid = 0;
  std::int64_t gid = 0;
  std::string link;  ///< where a link points
};

}  // namespace tarball
