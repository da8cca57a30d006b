#include "tests/support/archive/Measured.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <stdexcept>
#include <string>

#include "base/Descriptor.h"

#if defined(__SANITIZE_ADDRESS__)
#define STOWLINE_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define STOWLINE_ADDRESS_SANITIZER 1
#endif
#endif

namespace archive_test {
namespace {

std::string resultOf(const std::function<std::string()>& work) {
  try {
    return work();
  } catch (const std::exception& error) {
    return error.what();
  }
}

std::string readAll(int descriptor) {
  std::string text;
  char buffer[4096];
  ssize_t count = 0;
  while ((count = read(descriptor, buffer, sizeof buffer)) > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

Measured measured(const std::function<std::string()>& work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  base::Descriptor reading(ends[0]);
  base::Descriptor writing(ends[1]);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    const std::string result = resultOf(work);
    const ssize_t written = write(writing.number(), result.data(), result.size());
    _exit(written == static_cast<ssize_t>(result.size()) ? 0 : 1);
  }
  writing.reset();
  Measured outcome{.result = readAll(reading.number())};
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) {
    throw std::runtime_error("the process failed with wait status " + std::to_string(status));
  }
  outcome.peak = usage.ru_maxrss;
  return outcome;
}

bool canMeasureMemory() {
#ifdef STOWLINE_ADDRESS_SANITIZER
  return false;
#else
  return true;
#endif
}

}  // namespace archive_test
