#include "desk/tree/TreeLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "desk/tree/ReceiverTree.h"

namespace desk {

TreeLock::TreeLock(const std::filesystem::path& dir)
    : dir_(open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (dir_ && flock(dir_.number(), LOCK_EX | LOCK_NB) == 0) return;
  const std::string name = "'" + dir.string() + "'";
  if (errno == EWOULDBLOCK)
    throw TreeError(name + " is in use by another stowline: close that first");
  throw TreeError("cannot use " + name + ": " + std::strerror(errno));
}

}  // namespace desk
