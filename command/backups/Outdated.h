#pragma once

#include <string>

#include "command/backups/Catalogue.h"

namespace backups {

/// Marks what the next scheduled backup of the model `model` will delete; with "" what that of any
/// model will, as far as the names have models in them and the module knows others.
void markOutdated(Catalogue& catalogue, const std::string& model);

}  // namespace backups
