#include "command/scheduled/Medium.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "base/Answer.h"
#include "base/Descriptor.h"
#include "base/SystemError.h"
#include "command/backups/Engine.h"
#include "host/plain/Error.h"
#include "plugin/src/Media.h"

namespace scheduled {
namespace {

/// What is written to see whether a medium takes anything: more than the blocks that a file system
/// keeps back within a file's own record.
constexpr std::size_t kProbe = 65536;

/// Writes and syncs the probe. Returns whether it has all been taken; errno says why not.
bool writeProbe(int file) {
  const std::string bytes(kProbe, 'x');
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = write(file, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  return fsync(file) == 0;
}

}  // namespace

void requireMounted(const plain::Host& host) {
  const std::string setting = backups::mediumOf(host);
  const std::string medium = setting.substr(0, setting.find_last_not_of('/') + 1);
  base::requireAnswer(medium);
  struct stat status {};
  if (stat(medium.c_str(), &status) != 0 && errno != ENOENT) {
    throw base::SystemError(errno, medium);
  }
  std::error_code error;
  const std::string directory = std::filesystem::canonical(medium, error).string() + "/";
  const auto holds = [&](const host::Object& mounted) {
    return directory.starts_with(plain::textOf(mounted) + "/");
  };
  if (!error && std::ranges::any_of(stowline::mountedMedia(host.module()), holds)) return;
  throw std::runtime_error(medium.empty() ? "the settings name no medium"
                                          : "the medium " + medium + " is not mounted");
}

std::string whyNotWritable(const std::string& directory) {
  std::string path = directory + "/" + std::string(kProbeName) + "XXXXXX";
  base::Descriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (!file) return std::strerror(errno);
  // A run that is killed leaves no more than the name. Over some networks an open file stays.
  const bool has_name = unlink(path.c_str()) != 0;
  std::string reason = writeProbe(file.number()) ? "" : std::strerror(errno);
  file.reset();
  if (has_name) unlink(path.c_str());
  return reason;
}

void sync(const std::string& path) {
  const base::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  // EINVAL: a file system that does not synchronize such a file (fsync(2)), as some over a network.
  if (!file || (fsync(file.number()) != 0 && errno != EINVAL)) throw base::SystemError(errno, path);
  posix_fadvise(file.number(), 0, 0, POSIX_FADV_DONTNEED);
}

HeldDirectory::HeldDirectory(const std::string& path)
    : path_(path), directory_(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!directory_) throw base::SystemError(errno, path);
}

std::string HeldDirectory::whyGone(const plain::Host& host) const {
  try {
    requireMounted(host);
    struct stat held {};
    struct stat now {};
    if (fstat(directory_.number(), &held) != 0 || stat(path_.c_str(), &now) != 0) {
      throw base::SystemError(errno, path_);
    }
    if (held.st_dev == now.st_dev) return "";
    return "the medium went away: " + path_ + " is on another device than before";
  } catch (const std::exception& error) {
    return "the medium went away: " + plain::reasonOf(error);
  }
}

void HeldDirectory::remove(const std::string& path) const {
  const std::string name = path.substr(path.rfind('/') + 1);
  if (unlinkat(directory_.number(), name.c_str(), 0) != 0) throw base::SystemError(errno, path);
}

}  // namespace scheduled
