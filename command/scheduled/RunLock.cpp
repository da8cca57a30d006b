#include "command/scheduled/RunLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace scheduled {
namespace {

constexpr const char* kLockFile = "/var/run/stowline-auto.lock";

}  // namespace

RunLock::RunLock() : file_(open(kLockFile, O_RDWR | O_CREAT, 0600)) {
  if (file_ && flock(file_.number(), LOCK_EX | LOCK_NB) == 0) return;
  if (errno == EWOULDBLOCK) throw std::runtime_error("another scheduled backup is running");
  throw std::runtime_error(std::string("cannot use ") + kLockFile + ": " + std::strerror(errno));
}

}  // namespace scheduled
