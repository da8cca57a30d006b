#include "command/preview/Patterns.h"

#include <fnmatch.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "base/SystemError.h"
#include "command/archive/ByteLocale.h"
#include "command/archive/Paths.h"

namespace preview {
namespace {

/// Whether the error says that there is no such directory.
bool saysNoDirectory(const base::SystemError& error) {
  const int number = error.code().value();
  return number == ENOENT || number == ENOTDIR || number == ELOOP;
}

/// Returns the names in `directory` that match the component, sorted.
std::vector<std::string> matchesIn(const base::Root& receiver, const std::string& directory,
                                   const std::string& component) {
  std::vector<std::string> names = receiver.names(directory + "/");
  std::erase_if(names, [&](const std::string& name) {
    return fnmatch(component.c_str(), name.c_str(), FNM_PERIOD) != 0;
  });
  std::ranges::sort(names);
  return names;
}

/// Takes out of the paths those that name nothing.
void keepWhatIsThere(const base::Root& receiver, Expansion& expansion) {
  std::erase_if(expansion.paths, [&](const std::string& path) {
    try {
      return !receiver.linkStatus(path);
    } catch (const base::SystemError&) {
      expansion.unreadable.push_back(path);
      return true;
    }
  });
}

}  // namespace

Expansion expand(const base::Root& receiver, const std::string& pattern) {
  const tarball::ByteLocale bytes;
  Expansion expansion{.paths = {""}, .unreadable = {}};
  for (const std::string_view name : tarball::componentsOf(pattern)) {
    const std::string component(name);
    const bool is_plain = component.find_first_of("*?[\\") == std::string::npos;
    std::vector<std::string> paths;
    for (const std::string& directory : expansion.paths) {
      try {
        for (const std::string& match : is_plain ? std::vector<std::string>{component}
                                                 : matchesIn(receiver, directory, component)) {
          paths.push_back(directory + "/" + match);
        }
      } catch (const base::SystemError& error) {
        if (!saysNoDirectory(error)) expansion.unreadable.push_back(directory);
      }
    }
    expansion.paths = std::move(paths);
  }
  keepWhatIsThere(receiver, expansion);
  return expansion;
}

}  // namespace preview
