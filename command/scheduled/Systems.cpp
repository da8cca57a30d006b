#include "command/scheduled/Systems.h"

#include <algorithm>

#include "host/include/Error.h"
#include "host/native/OsError.h"

namespace scheduled {

int System::system(const std::string& command) {
  commands_.push_back(command);
  return NativeSystem::system(command);
}

void System::remove(const std::string& path) {
  if (written_.contains(path)) {
    throw host::Error("RuntimeError", "this run has written it: '" + path + "'");
  }
  NativeSystem::remove(path);
  removed_.push_back(path);
}

void System::makedirs(const std::string& path) {
  try {
    NativeSystem::makedirs(path);
  } catch (const host::Error& error) {
    why_not_made_ = native::reasonOf(error);
    throw;
  }
}

void System::takeBack(const std::string& path) {
  NativeSystem::remove(path);
}

bool System::wasToWrite(const std::string& path) const {
  return std::ranges::any_of(commands_, [&](const std::string& command) {
    return command.starts_with("tar czf " + path + " ");
  });
}

}  // namespace scheduled
