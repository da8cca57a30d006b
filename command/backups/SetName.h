#pragma once

#include <optional>
#include <string>

namespace backups {

/// What the name of a backup file says.
struct SetName {
  std::string time;           ///< local time, as "2024-03-05 07:04"
  std::string model;          ///< of the receiver that wrote it
  bool is_scheduled = false;  ///< whether a timer wrote it
  std::string version;        ///< the version of a configuration's layout, such as "c"; "" for none
};

/// Returns what `name` says; nothing when it is not as the backup engine writes names.
std::optional<SetName> parseSetName(const std::string& name);

}  // namespace backups
