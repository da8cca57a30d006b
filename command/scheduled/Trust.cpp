#include "command/scheduled/Trust.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <vector>

#include "command/backups/Catalogue.h"
#include "command/backups/RestoreScreen.h"
#include "command/backups/SetName.h"
#include "command/backups/VerifyFile.h"
#include "host/look/Host.h"
#include "host/native/Host.h"
#include "host/native/Model.h"
#include "host/native/Root.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Setup.h"

namespace scheduled {
namespace {

using backups::FileKind;

/// The receiver that this process is in, with nothing happening.
struct Looked {
  explicit Looked(host::Host& host)
      : system(native::Root("/")), receiver(system, host.deviceName(), native::kSettingsFile) {
    stowline::load(receiver);
  }

  look::System system;
  look::Host receiver;
};

/// Returns the files that housekeeping would delete now.
std::set<std::string> outdated(host::Host& host) {
  Looked looked(host);
  stowline::BackupActions(looked.receiver, "auto").houseKeeping();
  const std::vector<std::string> removed = looked.system.takeRemoved();
  return {removed.begin(), removed.end()};
}

}  // namespace

void requireNewestStamp(host::Host& host, const std::string& directory,
                        const std::string& engine_stamp) {
  const std::string model = host.deviceName();
  if (!native::isModel(model)) {
    throw std::runtime_error("'" + model + "' cannot be the model of a receiver");
  }
  const std::string own = backups::parseSetName("settings_" + engine_stamp + ".tar.gz")
                              .value_or(backups::SetName{})
                              .time;
  for (const std::string& name : host.os().listdir(directory)) {
    const auto said = backups::parseSetName(name);
    if (!said || !said->is_scheduled || said->model != model || said->time < own) continue;
    if (said->time == own) {
      throw std::runtime_error("there is a scheduled backup of this minute already: " + name);
    }
    throw std::runtime_error("the clock, " + own + ", is behind a scheduled backup: " + name);
  }
}

bool isRestorable(host::Host& host, const std::string& name, FileKind kind) {
  Looked looked(host);
  const std::string word = wordOf(kind);
  const auto* listed = std::ranges::find(backups::kKinds, word, &backups::Kind::name);
  backups::RestoreScreen screen(looked.receiver, listed->restoretype);
  const auto row = std::ranges::find(screen.rows(), name);
  return row != screen.rows().end() &&
         screen.pressOk(static_cast<std::size_t>(row - screen.rows().begin())).is_taken;
}

void requireGoodSurvivors(host::Host& host, const std::string& directory,
                          const tarball::BeginProgress& begin) {
  const std::set<std::string> going = outdated(host);
  std::map<FileKind, std::vector<std::string>> staying;
  for (const std::string& name : host.os().listdir(directory)) {
    const auto said = backups::parseSetName(name);
    const bool is_ours = said && said->is_scheduled && said->model == host.deviceName();
    if (is_ours && !going.contains(directory + "/" + name)) {
      staying[backups::kindOf(name)].push_back(name);
    }
  }
  std::map<FileKind, long long> sizes;  // of the largest that goes, by kind
  for (const std::string& path : going) {
    long long& size = sizes[backups::kindOf(path.substr(directory.size() + 1))];
    size = std::max(size, host.os().fileSize(path));
  }
  const auto is_good = [&](const std::string& name, FileKind kind) {
    const std::string path = directory + "/" + name;
    const bool is_empty = host.os().fileSize(path) == 0 && sizes.at(kind) > 0;
    return !is_empty && isRestorable(host, name, kind) &&
           backups::isSoundWithCompanions(path, kind, begin);
  };
  for (const FileKind kind : {FileKind::settings, FileKind::configuration, FileKind::plugin_list}) {
    if (!sizes.contains(kind)) continue;
    std::vector<std::string>& names = staying[kind];
    std::ranges::sort(names, std::greater());  // the newest first
    if (std::ranges::any_of(names, [&](const auto& name) { return is_good(name, kind); })) {
      continue;
    }
    throw std::runtime_error(
        std::string("none of the scheduled backups that would stay is good: ") + wordOf(kind));
  }
}

}  // namespace scheduled
