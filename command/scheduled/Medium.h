#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/Descriptor.h"
#include "host/plain/Host.h"

namespace scheduled {

/// Raises std::runtime_error, in one line, unless what the receiver's settings name as the medium
/// is a medium that is mounted, a link to one, or a directory on one, and it and the backup
/// directory, where there is one, answer in time. Nothing is asked of other media.
void requireMounted(const plain::Host& host);

/// Raises std::runtime_error, in one line, unless the backup directory is on a medium that is
/// mounted: it may be a link. To be asked after requireMounted().
void requireOnMedium(const plain::Host& host, const std::string& directory);

/// How the name of the file begins that whyNotWritable() writes; six letters and digits follow.
inline constexpr std::string_view kProbeName = ".stowline-";

/// What it holds, or the beginning of that: so many times this byte. That is more than the blocks
/// that a file system keeps back within a file's own record.
inline constexpr std::size_t kProbeSize = 65536;
inline constexpr char kProbeByte = 'x';

/// Writes a file of some size into `directory`; its name goes before that. Returns why it cannot be
/// written, as strerror(3) has it, "" when it can.
std::string whyNotWritable(const std::string& directory);

/// Waits until the file or directory `path` is on its medium, where that can be waited for, and
/// lets go of what memory holds of it, so that it is read from there next. Raises
/// base::SystemError.
void sync(const std::string& path);

/// The backup directory as a run has found it. While it lives the medium is in use: it cannot be
/// unmounted but by force, and no other file system gets the number of its device.
class HeldDirectory {
 public:
  /// Raises base::SystemError when `path` cannot be opened.
  explicit HeldDirectory(const std::string& path);

  /// Returns why what the path names is no longer on the same device of a mounted medium of
  /// `host`, in one line; "" when it is.
  std::string whyGone(const plain::Host& host) const;

  /// Deletes the file that `path` names in this directory, whatever the directory's own path names
  /// by now. Raises base::SystemError.
  void remove(const std::string& path) const;

 private:
  std::string path_;
  base::Descriptor directory_;
};

}  // namespace scheduled
