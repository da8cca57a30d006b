#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "command/scheduled/Medium.h"
#include "host/native/NativeSystem.h"

namespace scheduled {

/// The operating system of the receiver, which remembers what a run has done to it.
class System : public native::NativeSystem {
 public:
  /// From now on remove() removes files of `directory` alone, which outlives its use.
  void removeOnlyFrom(const HeldDirectory& directory) { held_ = &directory; }

  /// Removes the file, unless this run has written it: raises plain::Error ("RuntimeError") then.
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

  /// Returns why a directory could not be made last, "" for nothing.
  const std::string& whyNotMade() const { return why_not_made_; }

 private:
  const HeldDirectory* held_ = nullptr;
  std::set<std::string> written_;
  std::vector<std::string> removed_;
  std::optional<std::set<std::string>> rehearsed_;  ///< what would be removed, in a rehearsal
  std::string why_not_made_;
};

}  // namespace scheduled
