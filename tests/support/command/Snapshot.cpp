#include "tests/support/command/Snapshot.h"

#include <set>

#include "tests/support/command/Files.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

Entry entryAt(const fs::directory_entry& entry) {
  if (entry.is_symlink()) return {'l', 0, fs::read_symlink(entry.path()).string()};
  const auto mode = static_cast<unsigned>(entry.status().permissions());
  if (entry.is_directory()) return {'d', mode, ""};
  return {'f', mode, readFile(entry.path())};
}

}  // namespace

Snapshot snapshot(const fs::path& dir) {
  Snapshot result;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(dir)) {
    result[entry.path().lexically_relative(dir).string()] = entryAt(entry);
  }
  return result;
}

std::vector<std::string> changes(const Snapshot& before, const Snapshot& after) {
  std::set<std::string> paths;
  for (const auto& [path, entry] : before) paths.insert(path);
  for (const auto& [path, entry] : after) paths.insert(path);
  std::vector<std::string> result;
  for (const std::string& path : paths) {
    if (!before.contains(path)) {
      result.push_back("+ " + path);
    } else if (!after.contains(path)) {
      result.push_back("- " + path);
    } else if (before.at(path) != after.at(path)) {
      result.push_back("~ " + path);
    }
  }
  return result;
}

void forget(Snapshot& snapshot, const std::string& path) {
  std::erase_if(snapshot, [&](const auto& entry) {
    return entry.first == path || entry.first.starts_with(path + "/");
  });
}

}  // namespace command_test
