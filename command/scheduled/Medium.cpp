#include "command/scheduled/Medium.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "base/Answer.h"
#include "base/Descriptor.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "command/backups/Engine.h"
#include "host/plain/Error.h"
#include "plugin/src/Media.h"
#include "plugin/src/Setup.h"

namespace scheduled {
namespace {

constexpr std::string_view kMedia = "/media/";

/// Whether no medium is ever mounted there itself.
bool isForShares(std::string_view mount_point) {
  return mount_point == "/media/net" ||
         std::ranges::count(stowline::kAutomountRoots, mount_point, &host::Text::characters) > 0;
}

/// Whether the directory is there and on a medium that is mounted. stowline::mountedMedia() would
/// look into all the shares that there are, and wait for one that is silent.
bool isOnMedium(const plain::Host& host, const std::string& directory) {
  std::error_code error;
  const std::string place = std::filesystem::canonical(directory, error).string() + "/";
  const auto holds = [&](const std::string& line) {
    std::string device;
    std::string mounted;
    std::istringstream(line) >> device >> mounted;
    return mounted.starts_with(kMedia) && !isForShares(mounted) && place.starts_with(mounted + "/");
  };
  return !error && std::ranges::any_of(host.system().open("/proc/mounts"), holds);
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
  if (!isOnMedium(host, medium)) {
    throw std::runtime_error(medium.empty() ? "the settings name no medium"
                                            : "the medium " + medium + " is not mounted");
  }
  base::requireAnswer(plain::textOf(stowline::backupPath(host.module())));
}

void requireOnMedium(const plain::Host& host, const std::string& directory) {
  if (isOnMedium(host, directory)) return;
  throw std::runtime_error("the backup directory " + directory + " is on no mounted medium");
}

std::string whyNotWritable(const std::string& directory) {
  std::string path = directory + "/" + std::string(kProbeName) + "XXXXXX";
  base::Descriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (!file) return std::strerror(errno);
  // A run that is killed leaves no more than the name. Where a share refuses to unlink an open
  // file, the name goes afterwards.
  const bool has_name = unlink(path.c_str()) != 0;
  std::string reason;
  try {
    base::writeAll(file.number(), std::string(kProbeSize, kProbeByte), path);
    if (fsync(file.number()) != 0) throw base::SystemError(errno, path);
  } catch (const base::SystemError& error) {
    reason = error.code().message();
  }
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
    requireOnMedium(host, path_);
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
