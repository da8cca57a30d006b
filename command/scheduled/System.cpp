#include "command/scheduled/System.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/SystemError.h"
#include "command/scheduled/CapturedOutput.h"
#include "host/plain/Error.h"

namespace scheduled {

int System::system(const std::string& command) {
  const CapturedOutput output;
  const int status = NativeSystem::system(command);
  if (status != 0) failed_.emplace_back(" " + command + " ", output.lastLine());
  return status;
}

std::vector<std::string> System::popen(const std::string& command) {
  const CapturedOutput errors;
  return NativeSystem::popen(command);
}

std::string System::whyFailed(const std::string& word) const {
  const auto has_word = [&](const auto& failed) {
    return failed.first.find(" " + word + " ") != std::string::npos;
  };
  const auto last = std::find_if(failed_.rbegin(), failed_.rend(), has_word);
  return last == failed_.rend() ? "" : last->second;
}

void System::remove(const std::string& path) {
  if (rehearsed_) {
    rehearsed_->insert(path);
    return;
  }
  if (written_.contains(path)) {
    throw plain::Error("RuntimeError", "this run has written it: '" + path + "'");
  }
  try {
    held_->remove(path);
    removed_.push_back(path);
  } catch (const base::SystemError& error) {
    not_removed_.emplace_back(error.what());
  }
}

std::set<std::string> System::removedBy(const std::function<void()>& step) {
  struct Rehearsal {
    std::set<std::string>*& in_system;
    std::set<std::string> removed = {};
    ~Rehearsal() { in_system = nullptr; }
  } rehearsal{rehearsed_};
  rehearsed_ = &rehearsal.removed;
  step();
  return rehearsal.removed;
}

void System::makedirs(const std::string& path) {
  try {
    NativeSystem::makedirs(path);
  } catch (const base::SystemError& error) {
    // What is there and cannot be looked at says why itself.
    struct stat status {};
    const bool is_hidden =
        error.code() == std::errc::file_exists && stat(path.c_str(), &status) != 0;
    why_not_made_ = is_hidden ? base::SystemError(errno, path).what() : error.what();
    throw;
  }
}

void System::takeBack(const std::string& path) {
  NativeSystem::remove(path);
}

}  // namespace scheduled
