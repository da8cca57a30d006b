#pragma once

#include "host/include/Module.h"

namespace stowline {

/// The list of the backups of one kind, which restores and deletes them.
extern const host::Class kStowlineRestore;

}  // namespace stowline
