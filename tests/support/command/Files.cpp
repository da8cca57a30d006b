#include "tests/support/command/Files.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/command/Process.h"

namespace command_test {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  std::ostringstream content;  // copies in blocks: snapshots read many megabytes
  content << file.rdbuf();
  return content.str();
}

void writeFile(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

std::vector<std::string> namesIn(const fs::path& dir) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(dir)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

std::vector<std::string> membersOf(const fs::path& archive) {
  const Outcome listing = run({"tar", "tzf", archive});
  if (listing.status != 0) throw std::runtime_error(listing.errors);
  std::vector<std::string> members = linesOf(listing.output);
  std::ranges::sort(members);
  return members;
}

}  // namespace command_test
