#include "command/scheduled/System.h"

#include <utility>

#include "base/SystemError.h"
#include "host/plain/Error.h"

namespace scheduled {

void System::remove(const std::string& path) {
  if (rehearsed_) {
    rehearsed_->insert(path);
    return;
  }
  if (written_.contains(path)) {
    throw plain::Error("RuntimeError", "this run has written it: '" + path + "'");
  }
  held_->remove(path);
  removed_.push_back(path);
}

std::set<std::string> System::removedBy(const std::function<void()>& step) {
  rehearsed_.emplace();
  step();
  return *std::exchange(rehearsed_, std::nullopt);
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
