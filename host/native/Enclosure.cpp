#include "host/native/Enclosure.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

#include "host/native/Descriptor.h"

namespace native {
namespace {

/// Where the GUI works. Not "/": there the shell would expand the relative patterns of the
/// configuration backup's exclusions.
constexpr const char* kHome = "/home/root";

bool writeTo(const char* path, const std::string& text) {
  const native::Descriptor file(open(path, O_WRONLY | O_CLOEXEC));
  return file &&
         write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// Makes this process the root of a user namespace, as which it owns what its user owns.
void becomeRootOfNamespace() {
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  if (unshare(CLONE_NEWUSER) != 0 || !writeTo("/proc/self/uid_map", "0 " + user + " 1\n") ||
      !writeTo("/proc/self/setgroups", "deny") ||
      !writeTo("/proc/self/gid_map", "0 " + group + " 1\n")) {
    throw std::runtime_error(
        "this system gives an ordinary user no user namespace: run stowline as root, or allow them "
        "with 'sysctl user.max_user_namespaces=1000'");
  }
}

}  // namespace

void enterTree(const std::filesystem::path& dir) {
  if (geteuid() != 0) becomeRootOfNamespace();
  if (chroot(dir.c_str()) != 0 || chdir("/") != 0) {
    throw std::runtime_error("cannot move into " + dir.string() + ": " + std::strerror(errno) +
                             " (run stowline as root, or as an ordinary user of the tree)");
  }
}

void setReceiverEnvironment() {
  clearenv();
  setenv("PATH", "/bin:/sbin:/usr/bin:/usr/sbin", 1);
  setenv("HOME", kHome, 1);
  setenv("LANG", "C", 1);
  umask(022);
  if (chdir(kHome) != 0) throw std::runtime_error(std::string("the receiver has no ") + kHome);
}

}  // namespace native
