#include "command/scheduled/Trust.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <vector>

#include "base/SystemError.h"
#include "command/backups/SetName.h"
#include "command/backups/VerifyFile.h"
#include "plugin/src/Listing.h"

namespace scheduled {
namespace {

using host::operator""_t;

using backups::Kind;

/// Returns the size of a file in bytes, nothing for one that cannot be looked at; `why` takes note
/// of the reason unless the name is just one of nothing.
std::optional<long long> sizeOf(plain::System& os, const std::string& path,
                                std::vector<std::string>& why) {
  try {
    return os.fileSize(path);
  } catch (const base::SystemError& error) {
    if (error.code() != std::errc::no_such_file_or_directory) why.emplace_back(error.what());
    return std::nullopt;
  }
}

/// The scheduled backups of a kind that can be looked at.
struct Scheduled {
  std::vector<std::string> staying = {};  ///< the paths, empty ones apart from
  std::vector<std::string> empty = {};    ///< ... these
  long long largest_going = -1;           ///< bytes, negative where none goes
};

}  // namespace

bool isListed(const plain::Host& host, const std::string& path, const Kind& kind) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return backups::isOfKind(name, kind) && stowline::isForBox(name, host.model());
}

std::vector<std::string> requireGoodSurvivors(const Start& start,
                                              const tarball::BeginProgress& begin) {
  const std::set<std::string> going =
      start.system.removedBy([&] { start.engine.call("houseKeeping"_t, {}); });
  const std::string model = start.host.model();
  std::vector<std::string> why;
  std::map<const Kind*, Scheduled> all;
  for (const std::string& name : start.system.listdir(start.directory)) {
    const auto said = backups::parseSetName(name);
    if (!said || !said->is_scheduled || said->model != model) continue;
    const std::string path = start.directory + "/" + name;
    const auto size = sizeOf(start.system, path, why);
    if (!size) continue;
    Scheduled& of_kind = all[&backups::kindOf(name)];
    if (going.contains(path)) {
      of_kind.largest_going = std::max(of_kind.largest_going, *size);
    } else {
      (*size > 0 ? of_kind.staying : of_kind.empty).push_back(path);
    }
  }
  for (const Kind& kind : backups::kKinds) {
    auto& [staying, empty, largest_going] = all[&kind];
    if (largest_going < 0) continue;
    if (largest_going == 0) staying.insert(staying.end(), empty.begin(), empty.end());
    std::ranges::sort(staying, std::greater());  // the newest first
    std::string why_newest;
    const auto is_good = [&](const std::string& path) {
      const std::string reason = isListed(start.host, path, kind)
                                     ? backups::whyNotGood(path, kind, begin)
                                     : "the receiver does not list it";
      if (why_newest.empty() && !reason.empty()) why_newest = " (" + reason + ")";
      return reason.empty();
    };
    if (std::ranges::any_of(staying, is_good)) continue;
    throw std::runtime_error(
        std::string("none of the scheduled backups that would stay is good: ") + kind.word +
        why_newest);
  }
  return why;
}

}  // namespace scheduled
