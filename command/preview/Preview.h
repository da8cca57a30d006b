#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "command/archive/Reader.h"
#include "command/preview/Change.h"
#include "command/preview/Differences.h"
#include "command/preview/Rehearsal.h"

namespace preview {

/// What is to be looked at.
struct Request {
  std::filesystem::path file;                     ///< the archive
  std::optional<std::filesystem::path> receiver;  ///< the directory of the receiver's files
  bool differences = false;                       ///< whether a receiver's are to be found
};

/// What a restore would do on a receiver.
struct Restore {
  std::filesystem::path receiver;  ///< the directory of its files
  Rehearsal rehearsal;
  Changes changes;
  std::optional<Differences> differences;  ///< where they were to be found
};

/// What there is to show of an archive beside its members.
struct Preview {
  std::uint64_t members = 0;       ///< how many there are
  std::uint64_t unpacked = 0;      ///< bytes of the tar archive
  std::optional<Restore> restore;  ///< where a receiver was named
  std::string damage;              ///< what is wrong with the first damaged archive, "" for nothing
};

/// Looks at an archive and, where a receiver is named, at what a restore of it would do there.
/// Calls `take` with each of its members while it is read, once, as are the archives that are
/// restored with it; `begin` hears how far. Of a damaged archive, what comes before the damage
/// counts. Nothing but a temporary file is written. Raises std::runtime_error when there is no
/// receiver, and base::SystemError for an archive that cannot be read.
Preview look(const Request& request, const std::function<void(const tarball::Member&)>& take,
             const tarball::BeginProgress& begin = {});

}  // namespace preview
