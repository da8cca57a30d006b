#include "command/backups/FileKind.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "plugin/src/Listing.h"
#include "plugin/src/Places.h"

namespace backups {
namespace {

struct Word {
  FileKind kind;
  const char* word;
};

constexpr Word kWords[] = {
    {FileKind::settings, "settings"},     {FileKind::configuration, "configuration"},
    {FileKind::user_files, "user files"}, {FileKind::plugin_list, "plugins"},
    {FileKind::unknown, "unknown"},
};

FileKind kindOfListed(const std::string& name) {
  for (const Kind& kind : kKinds) {
    if (!isOfKind(name, kind)) continue;
    const auto* word = std::ranges::find(kWords, std::string(kind.name), &Word::word);
    return word->kind;
  }
  return FileKind::unknown;
}

}  // namespace

bool isOfKind(const std::string& name, const Kind& kind) {
  return std::ranges::any_of(stowline::kListedKinds, [&](const stowline::ListedKind& listed) {
    return listed.restoretype.characters() == kind.restoretype && isListed(listed, name);
  });
}

bool isLargeEnough(const Kind& kind, long long size) {
  return kind.name == std::string_view("plugins") || size >= stowline::kSmallestArchive;
}

FileKind kindOf(const std::string& name) {
  for (const std::string_view ending : stowline::kCompanions) {
    if (!name.ends_with(ending)) continue;
    const std::string archive = name.substr(0, name.size() - ending.size());
    if (kindOfListed(archive) == FileKind::configuration) return FileKind::user_files;
  }
  return kindOfListed(name);
}

const char* wordOf(FileKind kind) {
  return std::ranges::find(kWords, kind, &Word::kind)->word;
}

}  // namespace backups
