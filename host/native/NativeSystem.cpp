#include "host/native/NativeSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <utility>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "base/SystemError.h"

namespace native {
int NativeSystem::system(const std::string& command) {
  return std::system(command.c_str());
}

std::vector<std::string> NativeSystem::popen(const std::string& command) {
  FILE* pipe = ::popen(command.c_str(), "re");
  if (!pipe) throw base::SystemError(errno, command);
  const std::unique_ptr<FILE, int (*)(FILE*)> closing(pipe, pclose);
  return base::linesOf(base::readAll(fileno(pipe), command));
}

std::vector<std::string> NativeSystem::open(const std::string& path) {
  return base::linesOf(base::readFile(path));
}

std::vector<std::string> NativeSystem::listdir(const std::string& path) {
  base::Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory) throw base::SystemError(errno, path);
  return base::namesIn(std::move(directory), path);
}

bool NativeSystem::exists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0;
}

long long NativeSystem::fileSize(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) throw base::SystemError(errno, path);
  return status.st_size;
}

void NativeSystem::makedirs(const std::string& path) {
  const std::string directory = path.substr(0, path.find_last_not_of('/') + 1);
  for (std::size_t slash = directory.find('/', 1); slash != std::string::npos;
       slash = directory.find('/', slash + 1)) {
    const std::string parent = directory.substr(0, slash);
    if (mkdir(parent.c_str(), 0777) == 0) continue;
    const int reason = errno;
    if (!exists(parent)) throw base::SystemError(reason, parent);
  }
  if (mkdir(directory.c_str(), 0777) != 0) throw base::SystemError(errno, path);
}

void NativeSystem::remove(const std::string& path) {
  if (unlink(path.c_str()) != 0) throw base::SystemError(errno, path);
}

void NativeSystem::chmod(const std::string& path, int mode) {
  if (::chmod(path.c_str(), static_cast<mode_t>(mode)) != 0) throw base::SystemError(errno, path);
}

plain::LocalTime NativeSystem::localtime() {
  const std::time_t now = std::time(nullptr);
  std::tm fields{};
  localtime_r(&now, &fields);
  return {.tm_year = fields.tm_year + 1900,
          .tm_mon = fields.tm_mon + 1,
          .tm_mday = fields.tm_mday,
          .tm_hour = fields.tm_hour,
          .tm_min = fields.tm_min};
}

}  // namespace native
