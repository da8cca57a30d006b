#include "base/Root.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

#include "base/Files.h"
#include "base/SystemError.h"
#include "base/Walk.h"

namespace base {
namespace {

/// Returns the whole system's path of an open directory.
std::string pathOf(const Descriptor& directory) {
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(directory.number()));
}

/// Whether the error says that there is nothing of that name.
bool namesNothing(int number) {
  return number == ENOENT || number == ENOTDIR || number == ELOOP;
}

}  // namespace

Root::Root(const std::filesystem::path& dir)
    : dir_(::open(dir.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
      is_whole_system_(dir.lexically_normal() == "/") {
  if (!dir_) throw SystemError(errno, dir.string());
}

/// Returns no descriptor, and errno, for what cannot be opened. The whole system's own root needs
/// no help to stay inside.
Descriptor Root::resolve(const std::string& path, int flags) const {
  if (is_whole_system_) return Descriptor(::open(path.c_str(), flags | O_CLOEXEC));
  open_how how{};
  how.flags = static_cast<unsigned>(flags | O_CLOEXEC);
  how.resolve = RESOLVE_IN_ROOT;
  const auto number = syscall(SYS_openat2, dir_.number(), path.c_str(), &how, sizeof how);
  // Receivers' kernels are older than that call.
  if (number < 0 && errno == ENOSYS) return openBelow(dir_.number(), path, flags);
  return Descriptor(static_cast<int>(number));
}

Descriptor Root::open(const std::string& path) const {
  // Not to wait for a pipe's other end.
  Descriptor file = resolve(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!file) throw SystemError(errno, path);
  return file;
}

std::optional<struct stat> Root::status(const std::string& path) const {
  auto status = linkStatus(path);
  if (!status || !S_ISLNK(status->st_mode)) return status;
  const Descriptor file = resolve(path, O_PATH);
  if (file && fstat(file.number(), &*status) == 0) return status;
  if (namesNothing(errno)) return std::nullopt;
  throw SystemError(errno, path);
}

std::optional<struct stat> Root::linkStatus(const std::string& path) const {
  const std::size_t slash = path.rfind('/');
  const std::string parent = path.substr(0, slash + 1);
  if (!last_directory_ || parent != last_parent_) {
    last_directory_ = resolve(parent, O_PATH | O_DIRECTORY);
    last_parent_ = parent;
  }
  struct stat status {};
  const char* name = path.c_str() + slash + 1;
  const int flags = AT_SYMLINK_NOFOLLOW | (*name == '\0' ? AT_EMPTY_PATH : 0);
  if (last_directory_ && fstatat(last_directory_.number(), name, &status, flags) == 0)
    return status;
  if (namesNothing(errno)) return std::nullopt;
  throw SystemError(errno, path);
}

std::string Root::linkTarget(const std::string& path) const {
  const Descriptor link = resolve(path, O_PATH | O_NOFOLLOW);
  std::string target(PATH_MAX, '\0');
  const ssize_t length = link ? readlinkat(link.number(), "", target.data(), target.size()) : -1;
  if (length < 0) throw SystemError(errno, path);
  target.resize(static_cast<std::size_t>(length));
  return target;
}

std::optional<std::string> Root::realPath(const std::string& path) const {
  const Descriptor directory = resolve(path, O_PATH | O_DIRECTORY);
  if (!directory) return std::nullopt;
  const std::string real = pathOf(directory);
  const std::string root = is_whole_system_ ? "/" : pathOf(dir_);
  return root == "/" ? real : "/" + real.substr(std::min(real.size(), root.size() + 1));
}

std::vector<std::string> Root::names(const std::string& path) const {
  Descriptor directory = resolve(path, O_RDONLY | O_DIRECTORY);
  if (!directory) throw SystemError(errno, path);
  return namesIn(std::move(directory), path);
}

}  // namespace base
