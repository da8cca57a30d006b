#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace desk {

/// What is to be said about a skin, each thing once.
class Notices {
 public:
  void add(const std::string& line) {
    if (std::ranges::find(lines_, line) == lines_.end()) lines_.push_back(line);
  }

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  std::vector<std::string> lines_;
};

}  // namespace desk
