#include "base/Process.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "base/SystemError.h"

namespace base {

Descriptor openProcess(pid_t process) {
  const auto number = syscall(SYS_pidfd_open, process, 0);
  if (number < 0) throw SystemError(errno, "pidfd_open");
  return Descriptor(static_cast<int>(number));
}

std::vector<char*> argumentsOf(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  return arguments;
}

}  // namespace base
