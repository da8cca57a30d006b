#include "host/receiver/System.h"

#include "host/include/Error.h"

namespace receiver {
namespace {

/// Returns the lines that are left in a file object, and closes it. An error of the reading is the
/// one to raise, whatever the closing says then.
std::vector<std::string> linesOf(const Reference& file) {
  std::vector<std::string> lines;
  try {
    lines = textsOf(invoke<"readlines">(file).get());
  } catch (const host::Error&) {
    try {
      invoke<"close">(file);
    } catch (const host::Error&) {
    }
    throw;
  }
  invoke<"close">(file);
  return lines;
}

template <Literal name>
int fieldOf(const Reference& time) {
  return static_cast<int>(integerOf(attribute<name>(time).get()));
}

}  // namespace

/// The module looks at no status, and the bound function may return what it likes.
int System::system(const std::string& command) {
  call(names_.get<"system">(), command);
  return 0;
}

std::vector<std::string> System::popen(const std::string& command) {
  return linesOf(call(names_.get<"popen">(), command));
}

std::vector<std::string> System::open(const std::string& path) {
  return linesOf(call(names_.get<"open">(), path));
}

std::vector<std::string> System::listdir(const std::string& path) {
  return textsOf(call(names_.get<"listdir">(), path).get());
}

bool System::exists(const std::string& path) {
  return truthOf(invoke<"exists">(names_.get<"os_path">(), path).get());
}

std::string System::join(const std::string& directory, const std::string& name) {
  return textOf(invoke<"join">(names_.get<"os_path">(), directory, name).get());
}

long long System::fileSize(const std::string& path) {
  return integerOf(attribute<"st_size">(call(names_.get<"os_stat">(), path)).get());
}

void System::makedirs(const std::string& path) {
  call(names_.get<"makedirs">(), path);
}

void System::remove(const std::string& path) {
  call(names_.get<"remove">(), path);
}

void System::chmod(const std::string& path, int mode) {
  call(names_.get<"chmod">(), path, mode);
}

host::LocalTime System::localtime() {
  const Reference time = call(names_.get<"localtime">());
  return {.tm_year = fieldOf<"tm_year">(time),
          .tm_mon = fieldOf<"tm_mon">(time),
          .tm_mday = fieldOf<"tm_mday">(time),
          .tm_hour = fieldOf<"tm_hour">(time),
          .tm_min = fieldOf<"tm_min">(time)};
}

}  // namespace receiver
