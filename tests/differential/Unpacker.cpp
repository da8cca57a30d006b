#include "tests/differential/Unpacker.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <utility>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "base/SystemError.h"

namespace differential_test {
namespace {

namespace fs = std::filesystem;

/// The directories that the programs need, and gzip(1) with them.
constexpr const char* kSystem[] = {"usr", "bin", "lib", "lib64", "dev"};

void require(bool holds, const std::string& path) {
  if (!holds) throw base::SystemError(errno, path);
}

void make(const fs::path& root, const Item& item) {
  const fs::path path = root / item.path;
  switch (item.type) {
    case 'd':
      fs::create_directory(path);
      break;
    case 'f':
      std::ofstream(path) << item.text;
      break;
    case 'l':
      fs::create_symlink(item.text, path);
      break;
    default:
      fs::create_hard_link(root / item.text, path);
  }
}

}  // namespace

Unpacker::Unpacker(fs::path root, std::vector<std::string> tar)
    : root_(std::move(root)), tar_(std::move(tar)) {
  for (const char* name : kSystem) {
    const fs::path system = fs::path("/") / name;
    if (fs::is_symlink(system)) {
      fs::copy_symlink(system, root_ / name);
    } else if (fs::exists(system)) {
      fs::create_directory(root_ / name);
      require(mount(system.c_str(), (root_ / name).c_str(), nullptr, MS_BIND, nullptr) == 0,
              system);
      require(mount(nullptr, (root_ / name).c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY,
                    nullptr) == 0,
              system);
    }
  }
}

void Unpacker::reset(const std::vector<Item>& items) const {
  for (const fs::directory_entry& entry : fs::directory_iterator(root_)) {
    const std::string name = entry.path().filename();
    if (std::ranges::find(kSystem, name) == std::end(kSystem)) fs::remove_all(entry.path());
  }
  for (const Item& item : items) make(root_, item);
}

std::string Unpacker::unpack(const fs::path& archive) const {
  const base::Descriptor output(memfd_create("output", 0));
  const base::Descriptor input(open(archive.c_str(), O_RDONLY));
  std::vector<const char*> arguments;
  for (const std::string& argument : tar_) arguments.push_back(argument.c_str());
  for (const char* argument : {"-xzf", "-", "-C", "/"}) arguments.push_back(argument);
  arguments.push_back(nullptr);
  const pid_t child = fork();
  require(child >= 0, "fork");
  if (child == 0) {
    dup2(input.number(), STDIN_FILENO);
    dup2(output.number(), STDOUT_FILENO);
    dup2(output.number(), STDERR_FILENO);
    if (chroot(root_.c_str()) == 0 && chdir("/") == 0) {
      execv(arguments[0], const_cast<char* const*>(arguments.data()));
    }
    _exit(127);
  }
  int status = 0;
  require(waitpid(child, &status, 0) == child, "waitpid");
  if (status == 0) return "";
  require(lseek(output.number(), 0, SEEK_SET) == 0, "output");
  return "failed: " + base::readAll(output.number(), "output");
}

Tree Unpacker::tree() const {
  Tree tree;
  std::map<ino_t, std::string> inodes;
  std::vector<std::string> names;
  fs::recursive_directory_iterator at(root_);
  for (const fs::directory_entry& entry : at) {
    const std::string name = entry.path().lexically_relative(root_);
    if (at.depth() == 0 && std::ranges::find(kSystem, name) != std::end(kSystem)) {
      at.disable_recursion_pending();
      continue;
    }
    names.push_back(name);
  }
  std::ranges::sort(names);
  for (const std::string& name : names) {
    struct stat status {};
    require(lstat((root_ / name).c_str(), &status) == 0, name);
    const auto [first, is_first] = inodes.try_emplace(status.st_ino, name);
    char mode[8];
    std::snprintf(mode, sizeof mode, "%o", status.st_mode & 07777U);
    if (!is_first) {
      tree[name] = "= " + first->second;
    } else if (S_ISDIR(status.st_mode)) {
      tree[name] = std::string("d ") + mode;
    } else if (S_ISLNK(status.st_mode)) {
      tree[name] = "l " + fs::read_symlink(root_ / name).string();
    } else if (S_ISREG(status.st_mode)) {
      tree[name] = std::string("f ") + mode + " " + base::readFile((root_ / name).string());
    } else {
      tree[name] = "?";
    }
  }
  return tree;
}

}  // namespace differential_test
