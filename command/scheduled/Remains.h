#pragma once

#include <string>
#include <vector>

#include "command/scheduled/Preconditions.h"

namespace scheduled {

/// Returns the names of what runs that were killed have left in the backup directory and nobody can
/// use: files that were to show whether the medium takes anything and hold nothing else, and this
/// model's scheduled archives that lie beside a configuration archive which is not there, older
/// than the stamp. `start` has a directory. Raises base::SystemError when that cannot be read.
std::vector<std::string> remains(const Start& start);

}  // namespace scheduled
