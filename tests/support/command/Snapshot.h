#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace command_test {

/// What lies at a path.
struct Entry {
  char type = '?';      ///< 'd'irectory, 'f'ile or 'l'ink
  unsigned mode = 0;    ///< its permissions; 0 for a link
  std::string content;  ///< of a file, all of it; of a link, its target

  bool operator==(const Entry&) const = default;
};

/// A directory's whole content, by the path below it.
using Snapshot = std::map<std::string, Entry>;

Snapshot snapshot(const std::filesystem::path& dir);

/// Returns how `after` differs from `before`: "+ path", "- path" and "~ path", in the order of the
/// paths.
std::vector<std::string> changes(const Snapshot& before, const Snapshot& after);

/// Takes the path and all that lies below it out of the snapshot.
void forget(Snapshot& snapshot, const std::string& path);

}  // namespace command_test
