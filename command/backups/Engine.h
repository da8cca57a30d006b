#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/plain/Host.h"

namespace backups {

/// Returns the files that a restore of the configuration archive `path` leaves as they are.
std::vector<std::string> keptFiles(const plain::Host& host, const std::string& path);

/// Returns the medium that the settings name, such as "/media/hdd/".
std::string mediumOf(const plain::Host& host);

/// Returns the backup directory on it, which the module makes when it is not there; nothing when it
/// cannot.
std::optional<std::string> backupDirectory(const plain::Host& host);

}  // namespace backups
