#include "command/scheduled/System.h"

#include "host/native/OsError.h"
#include "host/plain/Error.h"

namespace scheduled {

void System::remove(const std::string& path) {
  if (written_.contains(path)) {
    throw plain::Error("RuntimeError", "this run has written it: '" + path + "'");
  }
  NativeSystem::remove(path);
  removed_.push_back(path);
}

void System::makedirs(const std::string& path) {
  try {
    NativeSystem::makedirs(path);
  } catch (const plain::Error& error) {
    why_not_made_ = native::reasonOf(error);
    throw;
  }
}

void System::takeBack(const std::string& path) {
  NativeSystem::remove(path);
}

}  // namespace scheduled
