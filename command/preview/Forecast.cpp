#include "command/preview/Forecast.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "base/SystemError.h"
#include "command/archive/Paths.h"
#include "command/preview/Patterns.h"

namespace preview {
namespace {

/// Returns the path that a member's path says from the receiver's root.
std::string absolute(const std::string& member_path) {
  return "/" + tarball::joined(tarball::componentsOf(member_path));
}

}  // namespace

Forecast::Forecast(base::Root receiver, const Plan& plan) : receiver_(std::move(receiver)) {
  for (const std::string& path : plan.kept) kept_.insert(locate(path));
  for (const std::string& path : plan.removed_again) removed_again_.push_back(locate(path));
  for (const std::string& pattern : plan.deleted_first) deleteFiles(pattern);
}

/// Returns where what `path` names lies on the receiver: in its directory, wherever that is.
std::string Forecast::locate(const std::string& path) {
  if (path == "/" || path.ends_with("/..")) return locateDirectory(path) + "/";
  const std::size_t slash = path.rfind('/');
  if (path.compare(0, slash, last_directory_) != 0) {
    last_directory_ = path.substr(0, slash);
    last_located_ = locateDirectory(last_directory_);
  }
  return last_located_ + path.substr(slash);
}

/// Returns where a directory lies, "" for the root. What is not there would be made where it is
/// said to be.
std::string Forecast::locateDirectory(const std::string& path) const {
  if (path.empty()) return "";
  if (const auto real = receiver_.realPath(path)) return *real == "/" ? "" : *real;
  const std::size_t slash = path.rfind('/');
  return locateDirectory(path.substr(0, slash)) + path.substr(slash);
}

/// Returns what is known to happen at a path, null for nothing.
const Change* Forecast::find(const std::string& path) const {
  const auto known = by_path_.find(path);
  return known == by_path_.end() ? nullptr : known->second;
}

/// Returns the change at a path, a new one where there is none yet. Its path is not to be changed.
Change& Forecast::changeAt(const std::string& path) {
  if (const auto known = by_path_.find(path); known != by_path_.end()) return *known->second;
  Change& change = changes_.emplace_back(Change{.path = path, .action = Action::add});
  by_path_.emplace(change.path, &change);
  return change;
}

/// Takes note of what the receiver has at the change's path. Returns whether that can be read.
bool Forecast::look(Change& change) const {
  try {
    change.before = stateOf(receiver_, change.path);
    return true;
  } catch (const base::SystemError&) {
    change.action = Action::unreadable;
    return false;
  }
}

/// Takes note of what is deleted, or cannot be read.
void Forecast::remove(const Change& seen) {
  Change& change = changeAt(seen.path);
  change.action = seen.action;
  change.before = seen.before;
}

/// Directories stay: that is not their command.
void Forecast::deleteFiles(const std::string& pattern) {
  const Expansion expansion = expand(receiver_, pattern);
  for (const std::string& path : expansion.unreadable) changeAt(path).action = Action::unreadable;
  for (const std::string& path : expansion.paths) {
    Change seen{.path = locate(path), .action = Action::remove};
    look(seen);
    if (!isDirectory(seen.before)) remove(seen);
  }
}

const Change& Forecast::take(const tarball::Member& member, Content& content) {
  Change& change = changeAt(locate(absolute(member.path)));
  change.member = ++members_;
  change.after = stateOf(member);
  if (member.type == tarball::Type::kHardLink) {
    const Change* target = find(locate(absolute(member.link)));
    if (target && target->after) change.after->size = target->after->size;
  }
  if (look(change)) judge(member, change, content);
  return change;
}

/// Says what the member does at a path that can be read.
void Forecast::judge(const tarball::Member& member, Change& change, Content& content) {
  if (isBlocked(change)) {
    change.action = Action::blocked;
    change.after = change.before;
  } else if (kept_.contains(change.path) && isFile(change.after)) {
    // Where there is nothing to put back, what is put back is empty.
    change.action = change.before ? Action::keep : Action::add;
    change.after->size = sizeOfKept(change.path);
    change.member = 0;
  } else if (!change.before) {
    change.action = Action::add;
  } else {
    change.action = Action::change;  // also when the archive cannot be read on
    change.action = judgeReplaced(member, change, content);
  }
}

/// Returns how many bytes are put back, 0 where there is nothing.
std::uint64_t Forecast::sizeOfKept(const std::string& path) const {
  const auto status = receiver_.status(path);
  return status && S_ISREG(status->st_mode) ? static_cast<std::uint64_t>(status->st_size) : 0;
}

/// Whether tar programs do different things there: where a directory is in the way of something
/// else or something else in the way of a directory.
bool Forecast::isBlocked(const Change& change) const {
  if (!change.before) return isBelowFile(change.path);
  return isDirectory(change.before) != isDirectory(change.after);
}

/// Whether something else than a directory is among those that the path lies in: on the receiver,
/// or by then, as the archives have brought it.
bool Forecast::isBelowFile(const std::string& path) const {
  for (std::size_t slash = path.rfind('/'); slash > 0; slash = path.rfind('/', slash - 1)) {
    const std::string above = path.substr(0, slash);
    const Change* brought = find(above);
    if (brought && brought->after) return !isDirectory(brought->after);
    if (!receiver_.linkStatus(above)) continue;
    const auto status = receiver_.status(above);
    return !status || !S_ISDIR(status->st_mode);
  }
  return false;
}

/// Returns what the member does in the place of something else.
Action Forecast::judgeReplaced(const tarball::Member& member, const Change& change,
                               Content& content) {
  using tarball::Type;
  if (member.type == Type::kHardLink) {
    const Change* target = find(locate(absolute(member.link)));
    const bool stays =
        target && target->action == Action::same && isHardLink(change.path, target->path);
    return stays ? Action::same : Action::change;
  }
  if (change.before != change.after) return Action::change;
  if (member.type == Type::kFile) return content.compare(receiver_, change.path);
  return member.type == Type::kDevice ? Action::change : Action::same;
}

/// Whether both paths are the same file on the receiver.
bool Forecast::isHardLink(const std::string& path, const std::string& target) const {
  try {
    const auto one = receiver_.linkStatus(path);
    const auto other = receiver_.linkStatus(target);
    return one && other && one->st_dev == other->st_dev && one->st_ino == other->st_ino;
  } catch (const base::SystemError&) {
    return false;
  }
}

Changes Forecast::finish() {
  for (const std::string& top : removed_again_) {
    removeAgain(top);
    removeRest(top);
  }
  return std::move(changes_);
}

/// Takes back what the archives bring there.
void Forecast::removeAgain(const std::string& top) {
  for (Change& change : changes_) {
    if (change.member == 0 || !(change.path + '/').starts_with(top + '/')) continue;
    change.action = Action::remove_again;
    change.after.reset();
  }
}

/// Deletes what else the receiver has there.
void Forecast::removeRest(const std::string& top) {
  for (std::vector<std::string> rest{top}; !rest.empty();) {
    const std::string path = std::move(rest.back());
    rest.pop_back();
    const bool is_known = find(path) != nullptr;
    Change seen{.path = path, .action = Action::remove};
    if (look(seen) && !seen.before) continue;
    if (!is_known) remove(seen);
    if (!isDirectory(seen.before)) continue;
    try {
      std::vector<std::string> names = receiver_.names(path);
      std::ranges::sort(names, std::greater());  // the last of the rest comes first
      for (const std::string& name : names) rest.push_back(path + "/" + name);
    } catch (const base::SystemError&) {
      if (!is_known) changeAt(path).action = Action::unreadable;
    }
  }
}

}  // namespace preview
