#include "bench/Processes.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Descriptor.h"
#include "base/Process.h"
#include "host/native/Enclosure.h"

namespace bench {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Words = std::vector<std::string>;

constexpr int kRuns = 21;
constexpr const char* kBackup = "select:'Backup configuration' ok";

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// A directory for the tree, which goes with all that is in it.
class TemporaryTree {
 public:
  TemporaryTree() : path_((fs::temp_directory_path() / "stowline-bench-XXXXXX").string()) {
    if (!mkdtemp(path_.data())) throw std::runtime_error("cannot make " + path_);
  }
  ~TemporaryTree() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryTree(const TemporaryTree&) = delete;
  TemporaryTree& operator=(const TemporaryTree&) = delete;

  std::string tree() const { return path_ + "/tree"; }
  std::string trace() const { return path_ + "/trace"; }

 private:
  std::string path_;
};

/// When a process has written its first line, and when it has ended.
struct Times {
  double first_line = 0;
  double end = 0;
};

/// Reads what comes from `descriptor` to its end. Returns the milliseconds from `start` to the
/// first newline.
double readToEnd(int descriptor, Clock::time_point start) {
  double first_line = 0;
  std::array<char, 65536> buffer{};
  for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
    const bool has_line =
        std::find(buffer.begin(), buffer.begin() + count, '\n') != buffer.begin() + count;
    if (first_line == 0 && has_line) first_line = millisecondsSince(start);
  }
  return first_line;
}

/// Runs `child` in a process of its own. Raises std::runtime_error when that fails.
Times measure(const std::function<void()>& child) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  const base::Descriptor output(ends[0]);
  base::Descriptor input(ends[1]);
  const Clock::time_point start = Clock::now();
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(input.number(), STDOUT_FILENO);
    child();
    _exit(127);
  }
  input.reset();
  Times times;
  times.first_line = readToEnd(output.number(), start);
  int status = 0;
  waitpid(pid, &status, 0);
  times.end = millisecondsSince(start);
  if (status != 0) throw std::runtime_error("a measured process has failed");
  return times;
}

void execute(const Words& words) {
  const std::vector<char*> argv = base::argumentsOf(words);
  execv(argv[0], argv.data());
}

Times runStowline(Words arguments) {
  arguments.insert(arguments.begin(),
                   (fs::read_symlink("/proc/self/exe").parent_path() / "stowline").string());
  return measure([&] { execute(arguments); });
}

Times runDesk(const TemporaryTree& place, const std::string& script, const Words& more = {}) {
  Words arguments = {"desk", "--receiver", place.tree(), "--frames", "json", "--play", script};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runStowline(arguments);
}

/// Runs `command` by the shell of the tree, which is the root directory then.
Times runInTree(const TemporaryTree& place, const std::string& command) {
  return measure([&] {
    native::enterEnclosure(place.tree(), true);
    setenv("PATH", "/bin:/sbin:/usr/bin:/usr/sbin", 1);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    execute({"/bin/sh", "-c", command});
  });
}

/// Returns the shell commands of a configuration backup on this tree that has an archive already.
Words backupCommands(const TemporaryTree& place) {
  runDesk(place, kBackup);
  runDesk(place, kBackup, {"--trace", place.trace()});
  std::ifstream trace(place.trace());
  Words commands;
  for (std::string line; std::getline(trace, line);) commands.push_back(line);
  if (commands.empty()) throw std::runtime_error("the backup has run no command");
  return commands;
}

/// Returns those of `commands` that run tar, as one command.
std::string tarAlone(const Words& commands) {
  std::string tars;
  for (const std::string& command : commands) {
    if (command.starts_with("tar ")) tars += (tars.empty() ? "" : " && ") + command;
  }
  return tars;
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void printRow(const char* what, const std::vector<double>& values) {
  const auto [least, most] = std::ranges::minmax(values);
  std::printf("%-44s %8.1f %8.1f %8.1f\n", what, median(values), least, most);
}

/// Prints how many times as long as `bare` the backup takes, by the medians and by the least times.
void printRatio(const char* what, const std::vector<double>& backup,
                const std::vector<double>& opening, const std::vector<double>& bare) {
  const double least = std::ranges::min(bare);
  const double own = std::ranges::min(backup) - std::ranges::min(opening);
  std::printf("backup / %-12s %5.2f (least %5.2f); less the desk's start and end: %5.2f (%5.2f)\n",
              what, median(backup) / median(bare), std::ranges::min(backup) / least,
              (median(backup) - median(opening)) / median(bare), own / least);
}

}  // namespace

void measureProcesses() {
  const TemporaryTree place;
  runStowline({"receiver", "new", place.tree()});
  const Words commands = backupCommands(place);

  std::vector<double> first_frame;
  std::vector<double> opening;
  std::vector<double> backup;
  std::vector<double> shells;
  std::vector<double> tar;
  // In turns, so that what else the machine does falls on all of them.
  for (int run = 0; run < kRuns; ++run) {
    const Times opened = runDesk(place, "frame");
    first_frame.push_back(opened.first_line);
    opening.push_back(opened.end);
    backup.push_back(runDesk(place, kBackup).end);
    double sum = 0;
    for (const std::string& command : commands) sum += runInTree(place, command).end;
    shells.push_back(sum);
    tar.push_back(runInTree(place, tarAlone(commands)).end);
  }

  std::printf("\nWhole processes, %d runs each, in ms\n", kRuns);
  std::printf("%-44s %8s %8s %8s\n", "", "median", "least", "most");
  printRow("desk, start to its first frame", first_frame);
  printRow("desk, start to its end, nothing done", opening);
  printRow("desk, start to its end, configuration backup", backup);
  printRow("the backup's commands, each in its own shell", shells);
  printRow("its tar commands alone", tar);
  printRatio("tar alone", backup, opening, tar);
  printRatio("its commands", backup, opening, shells);
}

}  // namespace bench
