#include "tests/support/command/Process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <system_error>

#include "base/Process.h"
#include "tests/support/command/Account.h"

namespace command_test {
namespace {

constexpr int kStowlineDescriptor = 9;

using TemporaryFile = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

TemporaryFile temporaryFile() {
  TemporaryFile file(std::tmpfile(), &std::fclose);
  if (!file) throw std::system_error(errno, std::generic_category(), "tmpfile");
  return file;
}

std::string contentOf(std::FILE* file) {
  std::string content;
  std::rewind(file);
  char block[65536];
  while (const std::size_t size = std::fread(block, 1, sizeof block, file)) {
    content.append(block, size);
  }
  return content;
}

/// Opens the command before the process gives up what may be needed to reach it.
void openStowline(bool keep_open) {
  const int binary = open(STOWLINE_COMMAND, O_RDONLY | O_CLOEXEC);
  if (binary < 0 || dup3(binary, kStowlineDescriptor, keep_open ? 0 : O_CLOEXEC) < 0) {
    throw std::system_error(errno, std::generic_category(), STOWLINE_COMMAND);
  }
}

[[noreturn]] void execute(const std::vector<std::string>& argv) {
  const std::vector<char*> words = base::argumentsOf(argv);
  if (argv[0] == kStowline) {
    fexecve(kStowlineDescriptor, words.data(), environ);
  } else {
    execvp(words[0], words.data());
  }
  std::fprintf(stderr, "cannot run %s: %s\n", words[0], std::strerror(errno));
  _exit(127);
}

/// Becomes the program `argv`, as this account.
[[noreturn]] void runChild(const std::vector<std::string>& argv, uid_t user, gid_t group,
                           std::FILE* output, std::FILE* errors) {
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(fileno(output), STDOUT_FILENO);
  dup2(fileno(errors), STDERR_FILENO);
  try {
    if (seteuid(getuid()) != 0) _exit(EXIT_FAILURE);
    openStowline(argv[0] != kStowline);
    becomeForGood(user, group);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    _exit(EXIT_FAILURE);
  }
  execute(argv);
}

}  // namespace

Outcome run(const std::vector<std::string>& argv) {
  const TemporaryFile output = temporaryFile();
  const TemporaryFile errors = temporaryFile();
  std::fflush(stdout);
  const uid_t user = geteuid();
  const gid_t group = getegid();
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child == 0) runChild(argv, user, group, output.get(), errors.get());
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return {WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status),
          contentOf(output.get()), contentOf(errors.get())};
}

std::vector<std::string> withoutLeakCheck(const std::vector<std::string>& wrapper) {
  std::vector<std::string> argv = {"env", "ASAN_OPTIONS=detect_leaks=0"};
  argv.insert(argv.end(), wrapper.begin(), wrapper.end());
  return argv;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace command_test
