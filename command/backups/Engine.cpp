#include "command/backups/Engine.h"

#include "plugin/src/Setup.h"
#include "plugin/src/StowlineHelpScreen.h"

namespace backups {

using host::operator""_t;

std::vector<std::string> keptFiles(const plain::Host& host, const std::string& path) {
  std::vector<std::string> files;
  for (const host::Text file : stowline::keptFiles(host.module(), path))
    files.emplace_back(file.characters());
  return files;
}

std::string mediumOf(const plain::Host& host) {
  return plain::textOf(stowline::mediumSetting(host.module())["value"_t]);
}

std::optional<std::string> backupDirectory(const plain::Host& host) {
  const host::Object directory = host.module()["getBackupRestorePath"_t]();
  if (directory.isNone()) return std::nullopt;
  return plain::textOf(directory);
}

}  // namespace backups
