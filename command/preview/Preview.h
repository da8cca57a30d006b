#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "command/archive/Reader.h"
#include "command/preview/Change.h"
#include "command/preview/Rehearsal.h"

namespace preview {

/// What a restore would do on a receiver.
struct Restore {
  std::filesystem::path receiver;  ///< the directory of its files
  Rehearsal rehearsal;
  std::vector<Change> changes;
};

/// What there is to show of an archive.
struct Preview {
  std::filesystem::path file;
  std::vector<tarball::Member> members;
  std::uint64_t unpacked = 0;      ///< bytes of the tar archive
  std::optional<Restore> restore;  ///< where a receiver was named
  std::string damage;              ///< what is wrong with the first damaged archive, "" for nothing
};

/// Looks at the archive `file` and, where `receiver` is given, at what a restore of it would do on
/// the receiver whose files lie below that directory. Of a damaged archive, what comes before the
/// damage counts. `begin` hears how far the archives have been read. Nothing is
/// written. Raises std::runtime_error when there is no receiver, and base::SystemError for
/// an archive that cannot be read.
Preview look(const std::filesystem::path& file,
             const std::optional<std::filesystem::path>& receiver,
             const tarball::BeginProgress& begin = {});

/// Takes a member and the reader that is about to read its content.
using TakeMember = std::function<void(const tarball::Member& member, tarball::Reader& reader)>;

/// Reads the archives of a restore of `file` member by member, in order. Returns what is wrong with
/// the first that is damaged, "" for nothing. Raises base::SystemError.
std::string readArchives(const std::filesystem::path& file, const Restore& restore,
                         const TakeMember& take, const tarball::BeginProgress& begin = {});

}  // namespace preview
