#pragma once

#include <string>
#include <vector>

namespace preview {

/// What the shell commands of a restore do to files, in the order of these fields.
struct Plan {
  std::vector<std::string> deleted_first;  ///< shell patterns of the files that are deleted
  std::vector<std::string> archives;       ///< what is unpacked, in order
  std::vector<std::string> torn = {};      ///< archives whose names the shell takes apart
  std::vector<std::string> removed_again;  ///< what is deleted afterwards, with all below it
  std::vector<std::string> kept;           ///< files that are put back as they were
};

/// Reads the plan out of the commands of a restore, in order. Commands of other kinds are not part
/// of it.
Plan planOf(const std::vector<std::string>& commands);

}  // namespace preview
