#include "plugin/src/Media.h"

#include <exception>
#include <unordered_set>

namespace stowline {
namespace {

/// Below these the automounter hangs network shares.
constexpr const char* kAutomountRoots[] = {"/media/net/autofs", "/media/net/autonet"};

bool canBeListed(host::OperatingSystem& os, const std::string& path) {
  try {
    os.listdir(path);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

std::unordered_set<std::string> excludedDirectories(host::OperatingSystem& os) {
  std::unordered_set<std::string> excluded;
  for (const std::string root : kAutomountRoots) {
    excluded.insert(root);
    if (!os.exists(root)) continue;
    for (const std::string& name : os.listdir(root)) {
      const std::string share = root + "/" + name;
      if (os.exists(share) && !canBeListed(os, share)) excluded.insert(share);
    }
  }
  return excluded;
}

/// Returns the second field of a mount table's line, which single spaces separate; empty when there
/// is none.
std::string mountPoint(const std::string& line) {
  const std::size_t first = line.find(' ');
  if (first == std::string::npos) return "";
  const std::size_t second = line.find(' ', first + 1);
  return line.substr(first + 1, second == std::string::npos ? second : second - first - 1);
}

}  // namespace

std::vector<std::string> mountedMedia(host::OperatingSystem& os) {
  const std::unordered_set<std::string> excluded = excludedDirectories(os);
  std::vector<std::string> media;
  for (const std::string& line : os.open("/proc/mounts")) {
    const std::string medium = mountPoint(line);
    if (medium.starts_with("/media/") && medium != "/media/net" && !excluded.contains(medium)) {
      media.push_back(medium);
    }
  }
  return media;
}

}  // namespace stowline
