#pragma once

#include "desk/tree/Files.h"

namespace desk {

/// The feed that the receiver's package manager installs from: an .ipk for every package of it,
/// and their index.
Files feed();

/// The packages of the image itself, with the package manager's records of them.
Files imagePackages();

/// The packages that a user has installed, as the package manager leaves them; its records name
/// those of the image too.
Files usedPackages();

/// The two packages that a user keeps on the medium, below its directory "plugins".
Files localPackages();

}  // namespace desk
