#pragma once

#include <string>
#include <vector>

namespace preview {

/// What a restore does to files, in the order of these fields. What commands of other kinds change
/// is not part of it.
struct Plan {
  std::vector<std::string> deleted_first = {};  ///< shell patterns of the files that are deleted
  std::vector<std::string> archives = {};       ///< what is unpacked, in order
  std::vector<std::string> torn = {};           ///< archives whose names the shell takes apart
  std::vector<std::string> removed_again = {};  ///< what is deleted afterwards, with all below it
  std::vector<std::string> kept = {};           ///< files that are put back as they were
};

}  // namespace preview
