#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "base/Root.h"
#include "command/archive/Member.h"

namespace preview {

/// What lies at a path.
struct State {
  tarball::Type type;
  std::uint64_t size;  ///< bytes of a file, 0 for all else
  unsigned mode;       ///< permissions as of tarball::Member
  std::string link;    ///< where a link points

  bool operator==(const State&) const = default;
};

/// Whether it is a file with content of its own, or a directory.
inline bool isFile(const std::optional<State>& state) {
  return state && state->type == tarball::Type::kFile;
}
inline bool isDirectory(const std::optional<State>& state) {
  return state && state->type == tarball::Type::kDirectory;
}

/// Returns what lies at `path` on the receiver, links not followed; nothing where nothing does.
/// Raises base::SystemError.
std::optional<State> stateOf(const base::Root& receiver, const std::string& path);

/// Returns what a member becomes when it is unpacked.
State stateOf(const tarball::Member& member);

/// What a restore does with a path.
enum class Action {
  add,
  change,
  same,
  keep,
  remove,
  remove_again,
  blocked,  ///< what becomes of it depends on the tar program
  unreadable,
};

struct ActionWord {
  Action action;
  const char* word;
};

/// All actions, in the order in which they are counted up, with their words.
inline constexpr ActionWord kActions[] = {
    {Action::add, "add"},         {Action::change, "change"},
    {Action::same, "same"},       {Action::keep, "keep"},
    {Action::remove, "delete"},   {Action::remove_again, "removed again"},
    {Action::blocked, "blocked"}, {Action::unreadable, "unreadable"},
};

/// Return the word for an action, and for a type, such as "hard link".
const char* wordOf(Action action);
const char* wordOf(tarball::Type type);

/// Returns the character that ls(1) puts before the permissions; of a hard link "h", as tar(1).
char characterOf(tarball::Type type);

/// What a restore does at one path.
struct Change {
  std::string path;  ///< absolute
  Action action;
  std::optional<State> before = {};  ///< nothing where nothing was, or none that can be read
  std::optional<State> after = {};   ///< nothing where there is nothing in the end
  std::uint64_t member = 0;          ///< the number of the member that decides, from 1; 0 for none
};

/// Changes that stay where they are in memory when more are added: there may be many.
using Changes = std::deque<Change>;

/// How many paths an action is taken with, and the bytes of the files among them.
struct Total {
  std::uint64_t count = 0;
  std::uint64_t before = 0;
  std::uint64_t after = 0;
};

/// Counts up the changes of one action.
Total totalOf(const Changes& changes, Action action);

}  // namespace preview
