#include "command/scheduled/Trust.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "base/Root.h"
#include "command/backups/Catalogue.h"
#include "command/backups/SetName.h"
#include "command/backups/VerifyFile.h"
#include "host/dryrun/Host.h"
#include "host/native/SettingsFile.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Setup.h"

namespace scheduled {
namespace {

using host::operator""_t;

using backups::Kind;

/// Returns the files that housekeeping would delete now, by a dry run of it.
std::set<std::string> outdated(const plain::Host& host) {
  dryrun::System system(base::Root("/"));
  dryrun::Host receiver(system, host.model(), native::kSettingsFile);
  stowline::load(receiver.module());
  receiver.module()["BackupActions"_t]({"auto"_t}).call("houseKeeping"_t, {});
  const std::vector<std::string> removed = system.takeRemoved();
  return {removed.begin(), removed.end()};
}

}  // namespace

bool isRestorable(const plain::Host& host, const std::string& path, const Kind& kind) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return backups::isOfKind(name, kind) && stowline::isForBox(name, host.model()) &&
         backups::isLargeEnough(kind, host.system().fileSize(path));
}

void requireGoodSurvivors(const plain::Host& host, const std::string& directory,
                          const tarball::BeginProgress& begin) {
  const std::set<std::string> going = outdated(host);
  std::map<const Kind*, std::vector<std::string>> staying;
  for (const std::string& name : host.system().listdir(directory)) {
    const auto said = backups::parseSetName(name);
    const bool is_ours = said && said->is_scheduled && said->model == host.model();
    if (is_ours && !going.contains(directory + "/" + name)) {
      staying[&backups::kindOf(name)].push_back(name);
    }
  }
  std::map<const Kind*, long long> sizes;  // of the largest that goes, by kind
  for (const std::string& path : going) {
    long long& size = sizes[&backups::kindOf(path.substr(directory.size() + 1))];
    size = std::max(size, host.system().fileSize(path));
  }
  const auto is_good = [&](const std::string& name, const Kind& kind) {
    const std::string path = directory + "/" + name;
    const bool is_empty = host.system().fileSize(path) == 0 && sizes.at(&kind) > 0;
    return !is_empty && isRestorable(host, path, kind) &&
           backups::isSoundWithCompanions(path, kind, begin);
  };
  for (const Kind& kind : backups::kKinds) {
    if (!sizes.contains(&kind)) continue;
    std::vector<std::string>& names = staying[&kind];
    std::ranges::sort(names, std::greater());  // the newest first
    if (std::ranges::any_of(names, [&](const auto& name) { return is_good(name, kind); })) {
      continue;
    }
    throw std::runtime_error(
        std::string("none of the scheduled backups that would stay is good: ") + kind.word);
  }
}

}  // namespace scheduled
