#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "command/scheduled/Medium.h"
#include "host/native/NativeSystem.h"

namespace scheduled {

/// The operating system of the receiver, which remembers what a run has done to it.
class System : public native::NativeSystem {
 public:
  /// From now on remove() removes files of `directory` alone, which outlives its use.
  void removeOnlyFrom(const HeldDirectory& directory) { held_ = &directory; }

  /// As of NativeSystem; what commands print is kept off the terminal. Raise base::SystemError,
  /// also where there is no room for that.
  int system(const std::string& command) override;
  std::vector<std::string> popen(const std::string& command) override;

  /// Returns what the last command that has failed and has this word printed last, "" for nothing.
  std::string whyFailed(const std::string& word) const;

  /// Removes the file; one that cannot be removed stays, and the caller goes on. Raises
  /// plain::Error
  /// ("RuntimeError") for one that this run has written.
  void remove(const std::string& path) override;

  /// Returns the files that `step` would remove, which stay.
  std::set<std::string> removedBy(const std::function<void()>& step);

  void makedirs(const std::string& path) override;

  /// Removes a file that this run has written and that is no backup. Raises plain::Error.
  void takeBack(const std::string& path);

  /// From now on `path` counts as written by this run.
  void protect(const std::string& path) { written_.insert(path); }

  /// Returns the files that were removed as old, in order.
  const std::vector<std::string>& removed() const { return removed_; }

  /// Returns why files were not removed as old, each in one line, in order.
  const std::vector<std::string>& notRemoved() const { return not_removed_; }

  /// Returns why a directory could not be made last, "" for nothing.
  const std::string& whyNotMade() const { return why_not_made_; }

 private:
  const HeldDirectory* held_ = nullptr;
  std::set<std::string> written_;
  std::vector<std::string> removed_;
  std::vector<std::string> not_removed_;
  std::vector<std::pair<std::string, std::string>> failed_;  ///< commands, and their last lines
  std::set<std::string>* rehearsed_ = nullptr;  ///< takes what would be removed, in a rehearsal
  std::string why_not_made_;
};

}  // namespace scheduled
