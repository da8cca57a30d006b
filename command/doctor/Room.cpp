#include "command/doctor/Room.h"

#include <glob.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "command/backups/Kind.h"
#include "command/output/Table.h"

namespace doctor {
namespace {

namespace fs = std::filesystem;

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

}  // namespace

Check checkRoom(const std::string& directory) {
  struct statvfs status {};
  if (statvfs(directory.c_str(), &status) != 0) {
    return {"room", State::failed, std::string("cannot be told: ") + std::strerror(errno)};
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

}  // namespace doctor
