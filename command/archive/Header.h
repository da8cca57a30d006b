#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "command/archive/Member.h"

namespace tarball {

/// The size of a header, and the unit in which contents are stored, in bytes.
inline constexpr std::size_t kBlock = 512;

/// Raised for a header that two programs may read differently, though it is not damaged. what()
/// says why, such as "two long names".
class NotPlain : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Returns whether the block's checksum is that of its bytes, in one of the ways that tar programs
/// write it.
bool hasRightChecksum(std::string_view block);

/// The long names that GNU tar gives a member in headers before the member's own.
struct LongNames {
  std::optional<std::string> path;
  std::optional<std::string> link;

  bool operator==(const LongNames&) const = default;
};

/// A header block in the ustar format (pax(1), "ustar Interchange Format") or in GNU tar's form of
/// it.
class Header {
 public:
  /// Takes a block of kBlock bytes apart. Raises NotPlain unless every field that matters is
  /// written in the one way that all programs read alike.
  explicit Header(std::string_view block);

  /// Whether it has a long name of the member that follows instead of being a member's own.
  bool isLongName() const;

  /// Returns how many bytes of content follow. A long name is shorter than PATH_MAX.
  std::uint64_t size() const { return member_.size; }

  /// Adds a long name, the content of this header, to those before it. Raises NotPlain when there
  /// is such a name already, or it is no plain name.
  void addTo(LongNames& names, std::string content) const;

  /// Returns the member, with its long names. Raises NotPlain when they fit no member.
  Member member(const LongNames& names) const;

 private:
  void requireLongName() const;

  char type_;
  bool has_prefix_ = false;
  Member member_;
};

}  // namespace tarball
