#include "command/scheduled/CapturedOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "base/Files.h"
#include "base/SystemError.h"

namespace scheduled {
namespace {

/// How much of the output's end is looked at for its last line, in bytes.
constexpr off_t kEnd = 4096;

/// Opens a file that has no name.
base::Descriptor openNameless() {
  std::string path = "/tmp/stowline-XXXXXX";
  base::Descriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (!file) throw base::SystemError(errno, "/tmp");
  unlink(path.c_str());
  return file;
}

base::Descriptor copyOf(int stream) {
  return base::Descriptor(fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

CapturedOutput::CapturedOutput()
    : file_(openNameless()), output_(copyOf(STDOUT_FILENO)), errors_(copyOf(STDERR_FILENO)) {
  std::cout.flush();
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    if (dup2(file_.number(), stream) < 0) throw base::SystemError(errno, "standard output");
  }
}

CapturedOutput::~CapturedOutput() {
  std::cout.flush();
  dup2(output_.number(), STDOUT_FILENO);
  dup2(errors_.number(), STDERR_FILENO);
}

std::string CapturedOutput::lastLine() const {
  const off_t size = lseek(file_.number(), 0, SEEK_END);
  if (lseek(file_.number(), size > kEnd ? size - kEnd : 0, SEEK_SET) < 0) return "";
  const auto lines = base::linesOf(base::readAll(file_.number(), "the commands' output"));
  if (lines.empty()) return "";
  return lines.back().substr(0, lines.back().find_last_not_of('\n') + 1);
}

}  // namespace scheduled
