#include "desk/tree/TreeLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>
#include <thread>

#include "base/Escape.h"
#include "desk/tree/ReceiverTree.h"

namespace desk {
namespace {

/// Returns the process that has locked an open file, as "process NUMBER (its first two words)";
/// "another stowline" where /proc/locks does not tell.
std::string holderOf(int file) {
  struct stat status {};
  fstat(file, &status);
  std::ostringstream locked;
  locked << std::hex << std::setfill('0') << std::setw(2) << major(status.st_dev) << ":"
         << std::setw(2) << minor(status.st_dev) << ":" << std::dec << status.st_ino;
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    std::istringstream fields(line);
    std::string number;
    std::string kind;
    std::string mode;
    std::string access;
    std::string process;
    std::string place;
    fields >> number >> kind >> mode >> access >> process >> place;
    if (kind != "FLOCK" || place != locked.str()) continue;
    std::ifstream words("/proc/" + process + "/cmdline");
    std::string command;
    std::string subcommand;
    if (!std::getline(words, command, '\0') || !std::getline(words, subcommand, '\0')) continue;
    return "process " + process + " (" +
           base::escapeControls(std::filesystem::path(command).filename().string() + " " +
                                subcommand) +
           ")";
  }
  return "another stowline";
}

/// Returns whether an open file could be locked. What a killed command has left in the tree has it
/// for another moment.
bool isLocked(int file) {
  constexpr std::chrono::milliseconds kPause(10);
  for (int pauses = 0; flock(file, LOCK_EX | LOCK_NB) != 0; ++pauses) {
    if (errno != EWOULDBLOCK || pauses == 100) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace

TreeLock::TreeLock(const std::filesystem::path& dir)
    : dir_(open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (dir_ && isLocked(dir_.number())) return;
  const std::string name = "'" + dir.string() + "'";
  if (errno == EWOULDBLOCK)
    throw TreeError(name + " is in use by " + holderOf(dir_.number()) + ": close that first");
  throw TreeError("cannot use " + name + ": " + std::strerror(errno));
}

}  // namespace desk
