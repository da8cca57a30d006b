#include "tests/desk/tree/TreeFixture.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace desk {
namespace {

namespace fs = std::filesystem;

fs::path makeDirectory() {
  std::string name = testing::TempDir() + "stowline-tree-XXXXXX";
  return mkdtemp(name.data());
}

std::string describe(const fs::directory_entry& entry) {
  const fs::file_status status = entry.symlink_status();
  const std::string mode = std::to_string(static_cast<int>(status.permissions())) + " ";
  if (fs::is_symlink(status)) return "link " + fs::read_symlink(entry.path()).string();
  if (fs::is_directory(status)) return "directory " + mode;
  return "file " + mode + read(entry.path());
}

[[noreturn]] void runChild(const fs::path& tree, const std::string& command, int output) {
  const std::string path = tree.string();
  std::vector<const char*> arguments = {"unshare", "-r", "chroot",        path.c_str(),
                                        "/bin/sh", "-c", command.c_str(), nullptr};
  if (geteuid() == 0) arguments.erase(arguments.begin(), arguments.begin() + 2);
  setenv("PATH", "/bin:/sbin:/usr/bin:/usr/sbin", 1);
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  execvp(arguments[0], const_cast<char* const*>(arguments.data()));
  _exit(126);
}

}  // namespace

Snapshot snapshot(const fs::path& dir, const std::vector<std::string>& skipped) {
  Snapshot entries;
  for (auto it = fs::recursive_directory_iterator(dir); it != fs::end(it); ++it) {
    const std::string path = it->path().lexically_relative(dir).string();
    if (std::ranges::find(skipped, path) != skipped.end())
      it.disable_recursion_pending();
    else
      entries[path] = describe(*it);
  }
  return entries;
}

void writeFile(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  out << content;
  out.close();
  EXPECT_TRUE(out) << path;
}

Outcome runIn(const fs::path& tree, const std::string& command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {-1, "no pipe"};
  const pid_t child = fork();
  if (child == 0) runChild(tree, command, ends[1]);
  close(ends[1]);
  Outcome outcome{-1, ""};
  char block[4096];
  for (ssize_t size = 0; (size = ::read(ends[0], block, sizeof block)) > 0;)
    outcome.output.append(block, static_cast<std::size_t>(size));
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
  return outcome;
}

bool canRunIn(const fs::path& tree) {
  return runIn(tree, "exit 42").status == 42;
}

Directory::Directory() : dir_(makeDirectory()) {}

Directory::~Directory() {
  fs::remove_all(dir_);
}

void Tree::SetUp() {
  layOut(tree_, "solo2");
  if (!canRunIn(tree_))
    GTEST_SKIP() << "neither chroot nor user namespaces: cannot run the tree's tools here";
}

}  // namespace desk
