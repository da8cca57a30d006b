#pragma once

#include <cstdint>
#include <string>

#include "base/Root.h"
#include "command/archive/Reader.h"
#include "command/preview/Change.h"

namespace preview {

/// The largest file whose difference is shown, in bytes.
inline constexpr std::uint64_t kLargestText = 256 * 1024;

/// The content of the member that a reader is at. The first kLargestText bytes stay once they are
/// read, so that a text that was compared can be had as well. Every operation raises what the
/// reader raises.
class Content {
 public:
  /// `reader` outlives this, and has read nothing of the member.
  explicit Content(tarball::Reader& reader) : reader_(reader) {}

  /// Returns whether the receiver's file `path` has this content: same, change or unreadable. To be
  /// asked once at most.
  Action compare(const base::Root& receiver, const std::string& path);

  /// Returns all of the content, null where it has more than kLargestText bytes.
  const std::string* text();

 private:
  const std::string& head();

  tarball::Reader& reader_;
  std::string head_;  ///< all of the content, or more than kLargestText bytes of it
};

}  // namespace preview
