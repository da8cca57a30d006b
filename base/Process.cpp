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

}  // namespace base
