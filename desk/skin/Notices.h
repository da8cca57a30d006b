#pragma once

#include <set>
#include <string>
#include <vector>

namespace desk {

/// What is to be said about a skin, each thing once.
class Notices {
 public:
  void add(const std::string& line) {
    if (known_.insert(line).second) lines_.push_back(line);
  }

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  std::set<std::string> known_;
  std::vector<std::string> lines_;  ///< in their order
};

}  // namespace desk
