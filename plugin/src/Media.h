#pragma once

#include <vector>

#include "plugin/src/Framework.h"

namespace stowline {

/// The automounter's own directories: no media, but the shares in them may be.
extern const host::Text kAutomountRoots[2];

/// Returns the mount points that a user may choose for backups, in the order of the mount table and
/// as it writes them: those below "/media/", but for the automounter's own directories and for
/// network shares that cannot be listed. Raises what reading the mount table or listing an
/// automounter's directory raises.
std::vector<Object> mountedMedia(const Module& module);

}  // namespace stowline
