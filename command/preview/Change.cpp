#include "command/preview/Change.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>

namespace preview {
namespace {

constexpr unsigned kPermissions = 07777;

tarball::Type typeOf(mode_t mode) {
  if (S_ISREG(mode)) return tarball::Type::kFile;
  if (S_ISDIR(mode)) return tarball::Type::kDirectory;
  if (S_ISLNK(mode)) return tarball::Type::kSymbolicLink;
  if (S_ISCHR(mode) || S_ISBLK(mode)) return tarball::Type::kDevice;
  if (S_ISFIFO(mode)) return tarball::Type::kFifo;
  return tarball::Type::kOther;
}

struct Name {
  tarball::Type type;
  const char* word;
  char character;
};

constexpr Name kOther = {tarball::Type::kOther, "other", '?'};

constexpr Name kNames[] = {
    {tarball::Type::kFile, "file", '-'},         {tarball::Type::kDirectory, "directory", 'd'},
    {tarball::Type::kSymbolicLink, "link", 'l'}, {tarball::Type::kHardLink, "hard link", 'h'},
    {tarball::Type::kDevice, "device", 'c'},     {tarball::Type::kFifo, "FIFO", 'p'},
};

const Name& nameOf(tarball::Type type) {
  const auto* known = std::ranges::find(kNames, type, &Name::type);
  return known == std::end(kNames) ? kOther : *known;
}

}  // namespace

std::optional<State> stateOf(const base::Root& receiver, const std::string& path) {
  const auto status = receiver.linkStatus(path);
  if (!status) return std::nullopt;
  State state{.type = typeOf(status->st_mode), .size = 0, .mode = 0, .link = ""};
  if (isFile(state)) state.size = static_cast<std::uint64_t>(status->st_size);
  if (state.type == tarball::Type::kSymbolicLink) {
    state.link = receiver.linkTarget(path);
  } else {
    state.mode = status->st_mode & kPermissions;
  }
  return state;
}

State stateOf(const tarball::Member& member) {
  const bool is_link = member.type == tarball::Type::kSymbolicLink;
  return {.type = member.type,
          .size = member.size,
          .mode = is_link ? 0 : member.mode & kPermissions,
          .link = member.link};
}

const char* wordOf(Action action) {
  return std::ranges::find(kActions, action, &ActionWord::action)->word;
}

const char* wordOf(tarball::Type type) {
  return nameOf(type).word;
}

char characterOf(tarball::Type type) {
  return nameOf(type).character;
}

Total totalOf(const Changes& changes, Action action) {
  Total total;
  for (const Change& change : changes) {
    if (change.action != action) continue;
    ++total.count;
    if (change.before) total.before += change.before->size;
    if (change.after) total.after += change.after->size;
  }
  return total;
}

}  // namespace preview
