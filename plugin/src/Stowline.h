#pragma once

#include "host/include/Module.h"

namespace stowline {

/// The main menu, in its backup and its restore flavour.
extern const host::Class kStowline;

}  // namespace stowline
