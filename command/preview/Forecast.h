#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/Root.h"
#include "command/archive/Member.h"
#include "command/preview/Change.h"
#include "command/preview/Content.h"
#include "command/preview/Rehearsal.h"

namespace preview {

/// Finds out what a restore would change on a receiver, which is only read. Changes are told where
/// they happen: the receiver's links to directories are followed. What it may not read of the
/// receiver it calls unreadable.
class Forecast {
 public:
  /// Begins with what is deleted first.
  Forecast(base::Root receiver, const Plan& plan);

  /// Takes the next member of the archives. A later member of the same path decides. Returns what
  /// it changes, as far as can be said now, which stays where it is. Raises what reading `content`
  /// raises; the member counts all the same.
  const Change& take(const tarball::Member& member, Content& content);

  /// Ends with what is removed again. Returns the changes: what is deleted first, then the rest in
  /// the order of the archives. The forecast is of no more use.
  Changes finish();

 private:
  std::string locate(const std::string& path);
  std::string locateDirectory(const std::string& path) const;
  Change& changeAt(const std::string& path);
  const Change* find(const std::string& path) const;
  bool look(Change& change) const;
  void remove(const Change& seen);
  void deleteFiles(const std::string& pattern);
  bool isBlocked(const Change& change) const;
  bool isBelowFile(const std::string& path) const;
  void judge(const tarball::Member& member, Change& change, Content& content);
  Action judgeReplaced(const tarball::Member& member, const Change& change, Content& content);
  std::uint64_t sizeOfKept(const std::string& path) const;
  bool isHardLink(const std::string& path, const std::string& target) const;
  void removeAgain(const std::string& top);
  void removeRest(const std::string& top);

  base::Root receiver_;
  std::unordered_set<std::string> kept_;
  std::vector<std::string> removed_again_;
  std::string last_directory_;  ///< that was located last ...
  std::string last_located_;    ///< ... and where that is
  Changes changes_;
  std::unordered_map<std::string_view, Change*> by_path_;  ///< the paths are those of the changes
  std::uint64_t members_ = 0;
};

}  // namespace preview
