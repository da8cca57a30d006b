#include "command/backups/FileKind.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "command/backups/Catalogue.h"
#include "command/backups/RestoreScreen.h"
#include "host/look/Host.h"
#include "plugin/src/BoxTypes.h"
#include "plugin/src/Setup.h"

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

/// Whether the restore list `restoretype` of some receiver lists a file of this name.
bool isListed(const std::string& name, const char* restoretype) {
  look::System system(std::nullopt);
  return std::ranges::any_of(stowline::kBoxTypes, [&](const char* model) {
    look::Host host(system, model, "");
    stowline::load(host);
    system.pretend(*stowline::getBackupRestorePath(host) + "/" + name);
    return !RestoreScreen(host, restoretype).rows().empty();
  });
}

FileKind kindOfListed(const std::string& name) {
  for (const Kind& kind : kKinds) {
    if (!isListed(name, kind.restoretype)) continue;
    const auto* word = std::ranges::find(kWords, std::string(kind.name), &Word::word);
    return word->kind;
  }
  return FileKind::unknown;
}

}  // namespace

std::vector<std::string> companionEndings() {
  const std::string archive = "/configuration.tar.gz";
  look::System system(std::nullopt);
  look::Host host(system, "any", "");
  std::vector<std::string> endings = unpackedBy(configurationRestore(host, archive));
  std::erase(endings, archive);
  for (std::string& ending : endings) ending.erase(0, archive.size());
  return endings;
}

FileKind kindOf(const std::string& name) {
  for (const std::string& ending : companionEndings()) {
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
