#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/differential/Generator.h"

namespace differential_test {

/// What lies on a receiver, a text for each path relative to its root: "d 755", "f 644 CONTENT",
/// "l TARGET", "= PATH" for what is the same file as an earlier path.
using Tree = std::map<std::string, std::string>;

/// A receiver that one tar program unpacks archives on: a root directory of its own, in which the
/// program finds this machine's programs and libraries.
class Unpacker {
 public:
  /// `root`: an empty directory. `tar`: the program and its first arguments, by path. Raises
  /// base::SystemError.
  Unpacker(std::filesystem::path root, std::vector<std::string> tar);

  /// Makes the root hold these items and nothing else of its own.
  void reset(const std::vector<Item>& items) const;

  /// Unpacks the compressed archive, a file outside the root, as the restore does: at "/", as root.
  /// Returns what the program says when it fails, "" when it does not.
  std::string unpack(const std::filesystem::path& archive) const;

  Tree tree() const;
  const std::filesystem::path& root() const { return root_; }
  std::string name() const { return tar_.front() + " " + tar_.at(1); }

 private:
  std::filesystem::path root_;
  std::vector<std::string> tar_;
};

}  // namespace differential_test
