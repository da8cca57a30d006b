#pragma once

#include <functional>
#include <string>
#include <vector>

#include "command/archive/GzipFile.h"

namespace doctor {

/// What a check has come to.
enum class State {
  ok,
  warning,  ///< backups can be made, but there is something to know
  failed,   ///< no backup can be made, or none be restored
};

/// Something that was looked at.
struct Check {
  const char* name;
  State state;
  std::string detail;  ///< what was found, in words
};

/// Returns the word for a state.
const char* wordOf(State state);

/// Carries out a check; one that raises has failed for that reason.
Check guarded(const char* name, const std::function<Check()>& check);

/// Looks whether the receiver that this process is in can back itself up and be restored. Nothing
/// stays changed but what the beginning of a scheduled backup makes: the backup directory, where
/// its medium is mounted, and the lock's file. `begin` hears how far the backups on the medium have
/// been read.
std::vector<Check> examine(const tarball::BeginProgress& begin);

}  // namespace doctor
