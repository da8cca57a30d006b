#pragma once

#include <vector>

#include "host/include/Module.h"

namespace stowline {

/// The confirmation of a configuration restore, which carries it out.
extern const host::Class kStowlineHelpScreen;

/// Returns the files that a restore of the configuration archive `path` leaves as the receiver has
/// them, in the order in which it puts them back.
std::vector<host::Text> keptFiles(const host::Module& module, const host::Object& path);

/// The files that some restore of a configuration archive writes itself, besides unpacking it.
struct OwnFiles {
  std::vector<host::Text> written;   ///< when all is unpacked, also by the network that it starts
  std::vector<host::Text> linked;    ///< those of them that it makes a link where they are none
  std::vector<host::Text> reserved;  ///< what it saves files to, where the archive may have that
};

OwnFiles ownFilesOfRestores();

/// What the restore removes when all is unpacked, with all below it.
inline constexpr const char* kRemovedAfterRestore = "/.qws";

}  // namespace stowline
