#include "command/scheduled/Remains.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "base/Descriptor.h"
#include "base/Files.h"
#include "command/backups/Kind.h"
#include "command/backups/SetName.h"
#include "command/scheduled/Medium.h"
#include "plugin/src/Places.h"

namespace scheduled {
namespace {

namespace fs = std::filesystem;

/// Whether mkostemp(3) can have made `name` for a probe.
bool isProbeName(const std::string& name) {
  constexpr std::size_t kRandomCharacters = 6;
  constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  return name.starts_with(kProbeName) && name.size() == kProbeName.size() + kRandomCharacters &&
         name.find_first_not_of(kAlphabet, kProbeName.size()) == std::string::npos;
}

/// Whether the regular file `path` holds nothing but what a probe does.
bool isProbe(const std::string& path) {
  const base::Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  if (!file) return false;
  const auto bytes = base::readAtMost(file.number(), kProbeSize, path);
  return bytes && bytes->find_first_not_of(kProbeByte) == std::string::npos;
}

/// Returns the name of the archive that `name` would lie beside, "" for none.
std::string archiveOf(const std::string& name) {
  for (const std::string_view ending : stowline::kCompanions) {
    if (name.ends_with(ending)) return name.substr(0, name.size() - ending.size());
  }
  return "";
}

}  // namespace

std::vector<std::string> remains(const Start& start) {
  std::vector<std::string> names = start.system.listdir(start.directory);
  std::ranges::sort(names);
  const std::string model = start.host.model();
  const auto is_useless = [&](const std::string& name) {
    const std::string archive = archiveOf(name);
    const auto said = backups::parseSetName(archive);
    return said && said->is_scheduled && said->model == model && said->time < start.stamp &&
           !std::ranges::binary_search(names, archive) &&
           &backups::kindOf(name) == &backups::kUserFiles;
  };
  std::vector<std::string> found;
  for (const std::string& name : names) {
    const std::string path = start.directory + "/" + name;
    std::error_code ignored;
    const auto is_file = [&] { return fs::is_regular_file(fs::symlink_status(path, ignored)); };
    if (isProbeName(name) ? is_file() && isProbe(path) : is_useless(name) && is_file()) {
      found.push_back(name);
    }
  }
  return found;
}

}  // namespace scheduled
