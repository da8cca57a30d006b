#pragma once

#include "command/Commands.h"

namespace command {

/// Moves this process for good to where a receiver's GUI would be: into the tree, which is this
/// command's alone then, or with none onto the receiver that it runs on. Raises std::runtime_error
/// where there is no receiver.
void moveOntoReceiver(const TreeOptions& receiver);

/// Warns of a tree without an enclosure on standard error.
void warnIfNotEnclosed(const TreeOptions& receiver);

}  // namespace command
