#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Root.h"
#include "host/native/NativeSystem.h"
#include "host/plain/System.h"

namespace dryrun {

/// The operating system of a dry run: files can be read; commands, removals and what else would
/// change something are recorded instead.
class System : public plain::System {
 public:
  /// `receiver`: the receiver's files. Without one, every file is taken to be there and to be
  /// empty, but for those of a mounted directory.
  explicit System(std::optional<base::Root> receiver) : receiver_(std::move(receiver)) {}

  /// From now on the receiver's `path` and what is below it is found in `directory`.
  void mount(const std::string& path, base::Root directory);

  /// Whether `path` names a regular file.
  bool isFile(const std::string& path);

  /// Returns the shell commands that would have run, in order, and forgets them.
  std::vector<std::string> takeCommands() { return std::exchange(commands_, {}); }

  /// Returns the files that would have been removed, in order, and forgets them.
  std::vector<std::string> takeRemoved() { return std::exchange(removed_, {}); }

  /// Records the command. Returns 0.
  int system(const std::string& command) override;

  /// Records the command. Returns no lines.
  std::vector<std::string> popen(const std::string& command) override;

  std::vector<std::string> open(const std::string& path) override;

  std::vector<std::string> listdir(const std::string& path) override;
  bool exists(const std::string& path) override;
  long long fileSize(const std::string& path) override;

  /// Do nothing.
  void makedirs(const std::string& /*path*/) override {}
  void chmod(const std::string& /*path*/, int /*mode*/) override {}

  void remove(const std::string& path) override { removed_.push_back(path); }
  plain::LocalTime localtime() override;

 private:
  struct Place;
  struct Status {
    long long size;  ///< in bytes
    bool is_file;
  };

  Place placeOf(const std::string& path) const;
  std::optional<Status> statusOf(const std::string& path) const;

  std::optional<base::Root> receiver_;
  std::map<std::string, base::Root> mounted_;
  std::vector<std::string> commands_;
  std::vector<std::string> removed_;
  native::NativeSystem native_;  ///< for what reads no file
};

}  // namespace dryrun
