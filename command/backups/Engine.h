#pragma once

#include <string>
#include <vector>

#include "command/archive/Places.h"

namespace backups {

/// The places of each kind of archive, as the module archives them.
struct EnginePlaces {
  tarball::Places settings;
  tarball::Places configuration;
  tarball::Places user_files;         ///< of the two skins
  tarball::Places any;                ///< those of all kinds
  std::vector<std::string> patterns;  ///< those of `any`, as shell patterns
};

EnginePlaces enginePlaces();

}  // namespace backups
