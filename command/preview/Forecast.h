#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/Root.h"
#include "command/archive/Reader.h"
#include "command/preview/Change.h"
#include "command/preview/Plan.h"

namespace preview {

/// Finds out what a restore would change on a receiver, which is only read. What it may not read of
/// the receiver it calls unreadable.
class Forecast {
 public:
  /// Begins with what is deleted first. `receiver` outlives the forecast.
  Forecast(const base::Root& receiver, const Plan& plan);

  /// Takes the next member of the archives, whose content `reader` is about to read. A later member
  /// of the same path decides. Raises what the reader raises; the member counts all the same.
  void take(const tarball::Member& member, tarball::Reader& reader);

  /// Ends with what is removed again. Returns the changes: what is deleted first, then the rest in
  /// the order of the archives. The forecast is of no more use.
  std::vector<Change> finish();

 private:
  Change& changeAt(const std::string& path);
  bool look(Change& change) const;
  void deleteFiles(const std::string& pattern);
  bool isBlocked(const Change& change) const;
  Action judge(const tarball::Member& member, const Change& change, tarball::Reader& reader) const;
  bool isHardLink(const std::string& path, const std::string& target) const;
  void removeAgain(const std::string& top);
  void removeRest(const std::string& top);

  const base::Root& receiver_;
  std::unordered_set<std::string> kept_;
  std::vector<std::string> removed_again_;
  std::vector<Change> changes_;
  std::unordered_map<std::string, std::size_t> places_;  ///< of the changes, by their paths
  std::uint64_t members_ = 0;
};

}  // namespace preview
