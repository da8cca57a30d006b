#pragma once

#include "Files.h"

namespace desk {

/// The files of the folders below skeleton/, as they were when the program was built.
Files factorySkeleton();
Files usedSkeleton();
Files mediaSkeleton();

}  // namespace desk
