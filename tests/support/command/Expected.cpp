#include "tests/support/command/Expected.h"

#include <fnmatch.h>
#include <glob.h>

#include <algorithm>

namespace command_test {
namespace {

namespace fs = std::filesystem;

/// The paths below `tree` that a pattern of the receiver's shell means.
std::vector<fs::path> matches(const fs::path& tree, const std::string& pattern) {
  glob_t found{};
  std::vector<fs::path> paths;
  if (glob((tree.string() + pattern).c_str(), 0, nullptr, &found) == 0) {
    paths.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  }
  globfree(&found);
  return paths;
}

bool isExcluded(const std::string& member) {
  return std::ranges::any_of(support::kConfigurationExclusions, [&](const char* pattern) {
    return fnmatch(pattern, member.c_str(), 0) == 0;
  });
}

/// The names under which tar stores `path` and what lies below it.
std::vector<std::string> storedNames(const fs::path& tree, const fs::path& path) {
  const std::string name = path.lexically_relative(tree).string();
  if (fs::is_symlink(path) || !fs::is_directory(path)) return {name};
  std::vector<std::string> names = {name + "/"};
  for (const auto& entry : fs::directory_iterator(path)) {
    std::ranges::copy(storedNames(tree, entry.path()), std::back_inserter(names));
  }
  return names;
}

template <class Patterns>
std::vector<std::string> members(const fs::path& tree, const Patterns& patterns) {
  std::vector<std::string> names;
  for (const char* pattern : patterns) {
    for (const fs::path& path : matches(tree, pattern)) {
      std::ranges::copy(storedNames(tree, path), std::back_inserter(names));
    }
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace

std::vector<std::string> settingsMembers(const fs::path& tree) {
  return members(tree, support::kChannelFiles);
}

std::vector<std::string> configurationMembers(const fs::path& tree) {
  std::vector<std::string> names = members(tree, support::kConfigurationPlaces);
  std::erase_if(names, isExcluded);
  return names;
}

}  // namespace command_test
