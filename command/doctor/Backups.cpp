#include "command/doctor/Backups.h"

#include <ftw.h>
#include <glob.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "base/Escape.h"
#include "base/SystemError.h"
#include "command/backups/Kind.h"
#include "command/backups/RestoreScreen.h"
#include "command/backups/SetName.h"
#include "command/backups/VerifyFile.h"
#include "command/output/Table.h"
#include "command/scheduled/PackageManager.h"
#include "command/scheduled/Remains.h"
#include "command/scheduled/Trust.h"
#include "host/plain/Error.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

/// A clock before this has not been set: the component is no older.
constexpr int kFirstYear = 2026;

/// How many files the next backup has at most: one of each kind, and the user files.
constexpr std::uint64_t kMostFiles = backups::kKinds.size() + 1;

/// Returns how many bytes there are in what `path` names and below it. What cannot be read has
/// none.
std::uint64_t sizeBelow(const fs::path& path) {
  std::error_code ignored;
  if (!fs::is_directory(fs::symlink_status(path, ignored))) {
    const std::uintmax_t size = fs::file_size(path, ignored);
    return ignored ? 0 : size;
  }
  std::uint64_t size = 0;
  constexpr auto kOptions = fs::directory_options::skip_permission_denied;
  for (fs::recursive_directory_iterator at(path, kOptions, ignored), end; !ignored && at != end;
       at.increment(ignored)) {
    std::error_code unknown;
    const std::uintmax_t bytes = at->is_regular_file(unknown) ? at->file_size(unknown) : 0;
    if (!unknown) size += bytes;
  }
  return size;
}

/// Returns how many bytes the next backup takes at most: all that it would hold, not compressed.
std::uint64_t sizeOfNextBackup() {
  std::uint64_t size = 0;
  for (const std::string& pattern : backups::patternsOf(backups::kUnknown)) {
    glob_t found{};
    if (glob(pattern.c_str(), 0, nullptr, &found) == 0) {
      for (std::size_t at = 0; at < found.gl_pathc; ++at) size += sizeBelow(found.gl_pathv[at]);
    }
    globfree(&found);
  }
  return size;
}

std::string sizeText(std::uint64_t bytes) {
  return output::sizeText(static_cast<long long>(bytes));
}

Check checkRoom(const std::string& directory) {
  struct statvfs status {};
  if (statvfs(directory.c_str(), &status) != 0) {
    return {"room", State::failed, "cannot be told"};
  }
  const std::uint64_t room = std::uint64_t{status.f_bavail} * status.f_frsize;
  const std::uint64_t needed = sizeOfNextBackup();
  const bool has_inodes = status.f_files > 0;  // some file systems make them as they go
  const bool is_enough = room >= needed && (!has_inodes || status.f_favail >= kMostFiles);
  const std::string text = sizeText(room) +
                           (has_inodes ? " and " + output::counted(status.f_favail, "file") : "") +
                           " free, the next backup takes at most " + sizeText(needed) + " and " +
                           output::counted(kMostFiles, "file");
  return {"room", is_enough ? State::ok : State::warning, text};
}

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
  return static_cast<long>(std::difftime(std::time(nullptr), std::mktime(&fields)) / kDay);
}

std::string ageText(const std::string& name) {
  const auto days = ageInDays(name);
  if (!days) return "";
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

/// What is to be said of a backup.
enum class Quality { unlisted, good, bad };

/// Judges a backup of a kind: whether it can be restored here, is sound, and is not empty unless it
/// may be. Raises base::SystemError.
Quality qualityOf(const scheduled::Start& start, const std::string& name, const backups::Kind& kind,
                  bool may_be_empty, const tarball::BeginProgress& begin) {
  const std::string path = start.directory + "/" + name;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 && errno != ENOENT) throw base::SystemError(errno, path);
  const bool is_listed = S_ISREG(status.st_mode) && backups::isShellWord(name) &&
                         scheduled::isRestorable(start.host, path, kind);
  if (!is_listed) return Quality::unlisted;
  const bool is_good =
      (status.st_size > 0 || may_be_empty) && backups::isSoundWithCompanions(path, kind, begin);
  return is_good ? Quality::good : Quality::bad;
}

/// Looks for the newest good backup of a kind. An empty list of plugins is one where none is
/// installed. `names`: those in the directory, the newest first.
Check checkLastGood(const scheduled::Start& start, const std::vector<std::string>& names,
                    const backups::Kind& kind, const tarball::BeginProgress& begin) {
  const bool may_be_empty = kind.is_list && scheduled::hasNoPlugins(start.system);
  std::vector<std::string> bad;
  std::string good = "there is none";
  for (const std::string& name : names) {
    if (!backups::isOfKind(name, kind)) continue;
    try {
      const Quality quality = qualityOf(start, name, kind, may_be_empty, begin);
      if (quality == Quality::bad) bad.push_back(name);
      if (quality != Quality::good) continue;
      good = base::escapeControls(name) + ageText(name);
      if (bad.empty()) return {kind.last_good, State::ok, good};
      break;
    } catch (const base::SystemError& error) {
      bad.push_back(name + " (" + error.code().message() + ")");
    }
  }
  if (!bad.empty()) good += "; newer and not good: " + namesText(bad);
  return {kind.last_good, State::warning, good};
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
