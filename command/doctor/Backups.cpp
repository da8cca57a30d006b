#include "command/doctor/Backups.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "base/Escape.h"
#include "command/backups/Kind.h"
#include "command/backups/RestoreScreen.h"
#include "command/backups/SetName.h"
#include "command/backups/VerifyFile.h"
#include "command/doctor/Room.h"
#include "command/scheduled/PackageManager.h"
#include "command/scheduled/Remains.h"
#include "command/scheduled/Trust.h"
#include "host/plain/Error.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

/// A clock before this has not been set: the component is no older.
constexpr int kFirstYear = 2026;

/// Returns the local time as a backup's name has it, "2024-03-05 07:04".
std::string timeText(std::time_t time) {
  std::tm fields{};
  localtime_r(&time, &fields);
  std::string text(32, '\0');
  text.resize(std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &fields));
  return text;
}

Check checkClock(const std::vector<std::string>& names) {
  const std::string now = timeText(std::time(nullptr));
  std::string newest;
  for (const std::string& name : names) {
    if (const auto said = backups::parseSetName(name)) newest = std::max(newest, said->time);
  }
  if (std::stoi(now) < kFirstYear) return {"clock", State::failed, now + " cannot be right"};
  if (newest > now) {
    return {"clock", State::warning, now + " is before the newest backup, " + newest};
  }
  return {"clock", State::ok, now};
}

/// Returns how long ago a backup was made, in days, by its name; nothing where that does not say.
std::optional<long> ageInDays(const std::string& name) {
  const auto said = backups::parseSetName(name);
  std::tm fields{};
  if (!said || !strptime(said->time.c_str(), "%Y-%m-%d %H:%M", &fields)) return {};
  fields.tm_isdst = -1;
  constexpr double kDay = 24 * 60 * 60;
  return std::lround(std::floor(std::difftime(std::time(nullptr), std::mktime(&fields)) / kDay));
}

std::string ageText(const std::string& name) {
  const auto days = ageInDays(name);
  if (!days) return "";
  if (*days < 0) return ", from the future";
  if (*days == 0) return ", less than a day old";
  return ", " + std::to_string(*days) + (*days == 1 ? " day old" : " days old");
}

/// Returns the first names for people, and how many more there are.
std::string namesText(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 3;
  std::string text;
  for (std::size_t at = 0; at < std::min(names.size(), kMost); ++at) {
    text += (at == 0 ? "" : ", ") + base::escapeControls(names[at]);
  }
  if (names.size() > kMost) text += " and " + std::to_string(names.size() - kMost) + " more";
  return text;
}

/// Whether the restore list shows a file that can be a backup. One that cannot be looked at can.
bool isListed(const scheduled::Start& start, const std::string& name, const backups::Kind& kind) {
  std::error_code error;
  const fs::file_type type = fs::status(start.directory + "/" + name, error).type();
  return (type == fs::file_type::regular || type == fs::file_type::none) &&
         backups::isShellWord(name) && scheduled::isListed(start.host, name, kind);
}

std::string whyNotGood(const std::string& path, const backups::Kind& kind, bool may_be_empty,
                       const tarball::BeginProgress& begin) {
  std::error_code unknown;
  return !may_be_empty && fs::file_size(path, unknown) == 0
             ? "empty"
             : backups::whyNotGood(path, kind, begin);
}

/// Looks for the newest good backup of a kind. An empty list of plugins is one where none is
/// installed. `names`: those in the directory, the newest first.
Check checkLastGood(const scheduled::Start& start, const std::vector<std::string>& names,
                    const backups::Kind& kind, const tarball::BeginProgress& begin) {
  constexpr std::size_t kMostBad = 100;  // reading all of a large medium takes hours
  const bool may_be_empty = kind.is_list && scheduled::hasNoPlugins(start.system);
  std::vector<std::string> bad;
  for (const std::string& name : names) {
    if (!isListed(start, name, kind)) continue;
    if (bad.size() == kMostBad) {
      return {kind.last_good, State::warning, "none of the newest 100 is good: " + namesText(bad)};
    }
    const std::string reason = whyNotGood(start.directory + "/" + name, kind, may_be_empty, begin);
    if (!reason.empty()) {
      bad.push_back(name + " (" + reason + ")");
      continue;
    }
    const std::string good = base::escapeControls(name) + ageText(name);
    if (bad.empty()) return {kind.last_good, State::ok, good};
    return {kind.last_good, State::warning, good + "; newer and not good: " + namesText(bad)};
  }
  return {kind.last_good, State::warning,
          "there is none" + (bad.empty() ? "" : "; newer and not good: " + namesText(bad))};
}

Check checkRemains(const scheduled::Start& start) {
  const std::vector<std::string> names = scheduled::remains(start);
  if (names.empty()) return {"remains", State::ok, "none"};
  return {"remains", State::warning,
          namesText(names) + ", of runs that were broken off: the next one removes them"};
}

}  // namespace

std::vector<Check> checkBackups(const scheduled::Start& start,
                                const tarball::BeginProgress& begin) {
  std::vector<Check> checks = {guarded("room", [&] { return checkRoom(start.directory); }),
                               guarded("remains", [&] { return checkRemains(start); })};
  try {
    std::vector<std::string> names = start.system.listdir(start.directory);
    std::ranges::sort(names, std::greater());
    checks.push_back(checkClock(names));
    for (const backups::Kind& kind : backups::kKinds) {
      checks.push_back(
          guarded(kind.last_good, [&] { return checkLastGood(start, names, kind, begin); }));
    }
  } catch (const std::runtime_error& error) {
    checks.push_back({"backups", State::failed, plain::reasonOf(error)});
  }
  return checks;
}

}  // namespace doctor
