#include "command/backups/Engine.h"

#include <iterator>

#include "plugin/src/Places.h"
#include "plugin/src/Setup.h"
#include "plugin/src/StowlineHelpScreen.h"

namespace backups {

using host::operator""_t;

namespace {

using Patterns = std::vector<std::string>;

template <class Table>
Patterns patternsOf(const Table& table) {
  return {std::begin(table), std::end(table)};
}

Patterns userFilePatterns() {
  Patterns patterns;
  for (const stowline::SkinFiles& skin : {stowline::kAtileFiles, stowline::kVfdSkinFiles}) {
    for (const char* start : skin.start_strings) patterns.push_back(std::string(start) + "*");
  }
  return patterns;
}

}  // namespace

constexpr Job kJobs[] = {
    {"settings", "createSettingFile"_t, "settingfile"_t, FileKind::settings},
    {"config", "createConfigFile"_t, "configfile"_t, FileKind::configuration},
    {"plugins", "createPluginList"_t, "pluginfile"_t, FileKind::plugin_list},
};

EnginePlaces enginePlaces() {
  const Patterns user_files = userFilePatterns();
  const Patterns settings = patternsOf(stowline::kChannelFiles);
  const Patterns configuration = patternsOf(stowline::kConfigPlaces);
  Patterns all = user_files;
  for (const Patterns& places : {settings, configuration})
    all.insert(all.end(), places.begin(), places.end());
  return {.settings = {settings, {}},
          .configuration = {configuration, patternsOf(stowline::kConfigExcludes)},
          .user_files = {user_files, {}},
          .any = {all, {}},
          .patterns = all};
}

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
