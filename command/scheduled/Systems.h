#pragma once

#include <set>
#include <string>
#include <vector>

#include "host/native/Host.h"
#include "host/native/NativeSystem.h"

namespace scheduled {

/// The operating system of the receiver, which remembers what a run has done to it.
class System : public native::NativeSystem {
 public:
  int system(const std::string& command) override;

  /// Removes the file, unless this run has written it: raises host::Error ("RuntimeError") then.
  void remove(const std::string& path) override;

  void makedirs(const std::string& path) override;

  /// Removes a file that this run has written and that is no backup. Raises host::Error.
  void takeBack(const std::string& path);

  /// Whether a command of this run was to write the archive `path`.
  bool wasToWrite(const std::string& path) const;

  /// From now on `path` counts as written by this run.
  void protect(const std::string& path) { written_.insert(path); }

  /// Returns the files that were removed as old, in order.
  const std::vector<std::string>& removed() const { return removed_; }

  /// Returns why a directory could not be made last, "" for nothing.
  const std::string& whyNotMade() const { return why_not_made_; }

 private:
  std::vector<std::string> commands_;
  std::set<std::string> written_;
  std::vector<std::string> removed_;
  std::string why_not_made_;
};

/// The receiver without its GUI. What the engine logs is in the report instead.
class Host : public native::Host {
 public:
  using native::Host::Host;
  void print(const std::string& /*line*/) override {}
};

}  // namespace scheduled
