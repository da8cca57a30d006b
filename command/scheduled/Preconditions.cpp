#include "command/scheduled/Preconditions.h"

#include <stdexcept>

#include "command/backups/Engine.h"
#include "command/backups/SetName.h"
#include "host/plain/Model.h"

namespace scheduled {
namespace {

using host::operator""_t;

std::string requireNoOtherRun(Start& start) {
  start.lock.emplace();
  return "none";
}

std::string requireModel(Start& start) {
  std::string model = start.host.model();
  if (plain::isModel(model)) return model;
  throw std::runtime_error("'" + model + "' cannot be the model of a receiver");
}

std::string requireMedium(Start& start) {
  requireMounted(start.host);
  const auto directory = backups::backupDirectory(start.host);
  if (!directory) {
    throw std::runtime_error("there is no backup directory: " + start.system.whyNotMade());
  }
  requireOnMedium(start.host, *directory);
  start.held.emplace(*directory);
  start.directory = *directory;
  const std::string reason = whyNotWritable(start.directory);
  if (reason.empty()) return start.directory + " can be written";
  throw std::runtime_error("cannot write to " + start.directory + ": " + reason);
}

/// A backup of the same stamp would be replaced, one of a later stamp be taken for the newer one.
std::string requireNewestStamp(Start& start) {
  if (start.directory.empty()) return "";
  start.engine = start.host.module()["BackupActions"_t]({"auto"_t});
  const std::string stamp = plain::textOf(start.engine["executiontime"_t]);
  const auto own = backups::parseSetName("settings_" + stamp + ".tar.gz");
  start.stamp = own.value_or(backups::SetName{}).time;
  const std::string model = start.host.model();
  for (const std::string& name : start.system.listdir(start.directory)) {
    const auto said = backups::parseSetName(name);
    if (!said || !said->is_scheduled || said->model != model || said->time < start.stamp) continue;
    if (said->time == start.stamp) {
      throw std::runtime_error("there is a scheduled backup of this minute already: " + name);
    }
    throw std::runtime_error("the clock, " + start.stamp +
                             ", is behind a scheduled backup: " + name);
  }
  return start.stamp;
}

}  // namespace

constexpr Precondition kPreconditions[] = {
    {"other runs", false, &requireNoOtherRun},
    {"model", true, &requireModel},
    {"medium", true, &requireMedium},
    {"time stamp", false, &requireNewestStamp},
};

}  // namespace scheduled
