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

/// What the headers before a member's own say of it: the long names of GNU tar, and the times of a
/// pax extended header.
struct Extensions {
  std::optional<std::string> path;
  std::optional<std::string> link;
  std::optional<std::string> times;  ///< the records

  bool operator==(const Extensions&) const = default;
};

/// A header block in the ustar format (pax(1), "ustar Interchange Format") or in GNU tar's form of
/// it.
class Header {
 public:
  /// Takes the block apart. Raises NotPlain unless every field that matters is written in the one
  /// way that all programs read alike.
  explicit Header(std::string_view block);

  /// Whether it says something of the member that follows instead of being a member's own.
  bool isExtension() const;

  /// Returns how many bytes of content follow. An extension has at most a path's length.
  std::uint64_t size() const { return member_.size; }

  /// Adds what an extension says, its content, to what has been said before. Raises NotPlain when
  /// it is said twice or is no plain name or times.
  void addTo(Extensions& extensions, std::string content) const;

  /// Returns the member, with what extensions say of it. Raises NotPlain when that fits no member.
  Member member(const Extensions& extensions) const;

 private:
  void requireExtension() const;

  char type_;
  bool has_prefix_ = false;
  Member member_;
};

}  // namespace tarball
