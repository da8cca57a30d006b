#include "desk/tree/Tools.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "desk/tree/Files.h"
#include "desk/tree/ReceiverTree.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

/// The tools that busybox stands in for. Its tar and killall are left out: the tree has its own.
constexpr const char* kApplets[] = {
    "[",      "awk",    "basename", "cat",  "chmod",    "cmp",   "cp",       "cut",      "date",
    "df",     "diff",   "dirname",  "du",   "echo",     "env",   "expr",     "false",    "find",
    "grep",   "gunzip", "gzip",     "head", "hostname", "id",    "kill",     "ln",       "ls",
    "md5sum", "mkdir",  "mktemp",   "mv",   "printf",   "pwd",   "readlink", "realpath", "rm",
    "rmdir",  "sed",    "seq",      "sh",   "sleep",    "sort",  "stat",     "sync",     "tail",
    "tee",    "test",   "touch",    "tr",   "true",     "uname", "uniq",     "vi",       "wc",
    "which",  "xargs",  "zcat"};

/// What a tree must have for the module's commands to run.
constexpr const char* kRequired[] = {"bin/busybox", "bin/sh",       "bin/toybox",
                                     "bin/tar",     "usr/bin/opkg", "usr/bin/killall"};

constexpr const char* kInstall =
    "; install the packages busybox and toybox (scripts/bootstrap does)";

struct Result {
  int status = 0;
  std::string output;
};

/// Runs the command through the machine's shell; returns its exit status and standard output.
Result run(const std::string& command) {
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) throw TreeError("cannot run the machine's shell");
  Result result;
  std::array<char, 4096> block{};
  while (const std::size_t size = fread(block.data(), 1, block.size(), pipe))
    result.output.append(block.data(), size);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::string shellQuoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

/// Where PATH has the program.
fs::path locate(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::istringstream directories(path ? path : "/bin:/usr/bin");
  for (std::string directory; std::getline(directories, directory, ':');) {
    fs::path file = fs::path(directory) / program;
    if (access(file.c_str(), X_OK) == 0 && fs::is_regular_file(file)) return file;
  }
  throw TreeError("no " + program + " on this machine" + kInstall);
}

/// A shell that finds a killall where PATH has none would run that one instead of the tree's.
void requirePlainShell(const fs::path& busybox) {
  constexpr int kNotFound = 127;
  const std::string shell = shellQuoted(busybox) + " sh -c killall 2>&1";
  if (run("PATH=/nonexistent " + shell).status != kNotFound)
    throw TreeError(busybox.string() +
                    " is no use: its shell prefers its own tools to those of the tree; install the "
                    "package busybox in place of busybox-static");
}

/// The shared libraries of the program, as the dynamic loader lists them.
std::set<fs::path> librariesOf(const fs::path& program) {
  std::set<fs::path> libraries;
  std::istringstream words(
      run("LD_TRACE_LOADED_OBJECTS=1 LD_PRELOAD= " + shellQuoted(program)).output);
  for (std::string word; words >> word;)
    if (word.starts_with('/')) libraries.insert(word);
  return libraries;
}

void copyFile(const fs::path& from, const fs::path& to) {
  fs::create_directories(to.parent_path());
  fs::copy_file(from, to);
}

}  // namespace

void requireMachineTools() {
  requirePlainShell(locate("busybox"));
  locate("toybox");
}

void copyTools(const fs::path& tree) {
  const fs::path busybox = locate("busybox");
  const fs::path toybox = locate("toybox");
  copyFile(busybox, tree / "bin/busybox");
  copyFile(toybox, tree / "bin/toybox");
  for (const char* applet : kApplets) fs::create_symlink("busybox", tree / "bin" / applet);

  std::set<fs::path> libraries = librariesOf(busybox);
  libraries.merge(librariesOf(toybox));
  for (const fs::path& library : libraries) copyFile(library, tree / library.relative_path());

  const fs::path time_zone = "/etc/localtime";
  if (fs::exists(time_zone)) copyFile(time_zone, tree / time_zone.relative_path());
}

void requireTools(const fs::path& tree) {
  for (const char* tool : kRequired)
    if (access((tree / tool).c_str(), X_OK) != 0)
      throw TreeError(inQuotes(tree) + " has no /" + tool +
                      ": put the tree back in order with 'stowline receiver flash " +
                      tree.string() + "'");
}

}  // namespace desk
