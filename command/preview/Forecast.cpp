#include "command/preview/Forecast.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "base/SystemError.h"
#include "command/archive/Paths.h"
#include "command/preview/Contents.h"
#include "command/preview/Patterns.h"

namespace preview {
namespace {

/// Returns the receiver's path of a member. One that ends with ".." is made one that ends with
/// ".": the last name of a path is not followed, and could lead out of the receiver.
std::string absolute(const std::string& member_path) {
  const std::string path = "/" + tarball::joined(tarball::componentsOf(member_path));
  return path.ends_with("/..") ? path + "/." : path;
}

/// Whether `path` is `top` or lies below it.
bool isWithin(const std::string& path, const std::string& top) {
  return path.starts_with(top) && (path.size() == top.size() || path[top.size()] == '/');
}

/// Returns whether the rest of the member's content is that of the receiver's file `path`.
Action compareContent(const base::Root& receiver, const std::string& path,
                      tarball::Reader& reader) {
  Contents contents(receiver, path);
  for (auto bytes = reader.read(); !bytes.empty(); bytes = reader.read()) contents.compare(bytes);
  switch (contents.verdict()) {
    case Contents::Verdict::same:
      return Action::same;
    case Contents::Verdict::different:
      return Action::change;
    default:
      return Action::unreadable;
  }
}

}  // namespace

Forecast::Forecast(const base::Root& receiver, const Plan& plan)
    : receiver_(receiver),
      kept_(plan.kept.begin(), plan.kept.end()),
      removed_again_(plan.removed_again) {
  for (const std::string& pattern : plan.deleted_first) deleteFiles(pattern);
}

/// Returns the change at a path, a new one where there is none yet.
Change& Forecast::changeAt(const std::string& path) {
  const auto [place, is_new] = places_.try_emplace(path, changes_.size());
  if (is_new) {
    changes_.push_back({.path = path, .action = Action::add, .before = {}, .after = {}});
  }
  return changes_[place->second];
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

/// Directories stay: that is not their command.
void Forecast::deleteFiles(const std::string& pattern) {
  const Expansion expansion = expand(receiver_, pattern);
  for (const std::string& path : expansion.unreadable) changeAt(path).action = Action::unreadable;
  for (const std::string& path : expansion.paths) {
    Change change{.path = path, .action = Action::remove, .before = {}, .after = {}};
    const bool is_readable = look(change);
    if (is_readable && change.before && change.before->type == tarball::Type::kDirectory) continue;
    changeAt(path) = std::move(change);
  }
}

void Forecast::take(const tarball::Member& member, tarball::Reader& reader) {
  Change& change = changeAt(absolute(member.path));
  change.member = ++members_;
  change.after = stateOf(member);
  if (member.type == tarball::Type::kHardLink) {
    const auto target = places_.find(absolute(member.link));
    if (target != places_.end() && changes_[target->second].after) {
      change.after->size = changes_[target->second].after->size;
    }
  }
  if (!look(change)) return;
  if (kept_.contains(change.path)) {
    // Where there is nothing to put back, what is put back is empty.
    change.action = change.before ? Action::keep : Action::add;
    change.after->size = change.before ? change.before->size : 0;
    change.member = 0;
  } else if (!change.before) {
    change.action = Action::add;
  } else if (isBlocked(change)) {
    change.action = Action::blocked;
    change.after = change.before;
  } else {
    change.action = Action::change;  // also when the archive cannot be read on
    change.action = judge(member, change, reader);
  }
}

/// Whether a directory that is not empty is in the way of something else.
bool Forecast::isBlocked(const Change& change) const {
  using tarball::Type;
  if (change.before->type != Type::kDirectory || change.after->type == Type::kDirectory) {
    return false;
  }
  try {
    return !receiver_.names(change.path).empty();
  } catch (const base::SystemError&) {
    return true;
  }
}

/// Returns what the member does in the place of something else.
Action Forecast::judge(const tarball::Member& member, const Change& change,
                       tarball::Reader& reader) const {
  using tarball::Type;
  if (member.type == Type::kHardLink) {
    const auto target = places_.find(absolute(member.link));
    const bool stays = target != places_.end() && changes_[target->second].action == Action::same &&
                       isHardLink(change.path, changes_[target->second].path);
    return stays ? Action::same : Action::change;
  }
  if (change.before != change.after) return Action::change;
  if (member.type == Type::kFile) return compareContent(receiver_, change.path, reader);
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

std::vector<Change> Forecast::finish() {
  for (const std::string& path : removed_again_) {
    const std::string top = absolute(path);
    removeAgain(top);
    removeRest(top);
  }
  return std::move(changes_);
}

/// Takes back what the archives bring there.
void Forecast::removeAgain(const std::string& top) {
  for (Change& change : changes_) {
    if (change.member == 0 || !isWithin(change.path, top)) continue;
    change.action = Action::remove_again;
    change.after.reset();
  }
}

/// Deletes what else the receiver has there.
void Forecast::removeRest(const std::string& top) {
  for (std::vector<std::string> rest{top}; !rest.empty();) {
    const std::string path = std::move(rest.back());
    rest.pop_back();
    const bool is_known = places_.contains(path);
    Change seen{.path = path, .action = Action::remove, .before = {}, .after = {}};
    if (look(seen) && !seen.before) continue;
    if (!is_known) changeAt(path) = seen;
    if (!seen.before || seen.before->type != tarball::Type::kDirectory) continue;
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
