#include "command/scheduled/System.h"

#include "base/SystemError.h"
#include "host/plain/Error.h"

namespace scheduled {

void System::remove(const std::string& path) {
  if (written_.contains(path)) {
    throw plain::Error("RuntimeError", "this run has written it: '" + path + "'");
  }
  held_->remove(path);
  removed_.push_back(path);
}

void System::makedirs(const std::string& path) {
  try {
    NativeSystem::makedirs(path);
  } catch (const base::SystemError& error) {
    why_not_made_ = error.what();
    throw;
  }
}

void System::takeBack(const std::string& path) {
  NativeSystem::remove(path);
}

}  // namespace scheduled
