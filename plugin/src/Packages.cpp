#include "plugin/src/Packages.h"

namespace stowline {

std::vector<std::string> withoutNewlines(std::vector<std::string> lines) {
  for (std::string& line : lines) line.erase(line.find_last_not_of('\n') + 1);
  return lines;
}

}  // namespace stowline
