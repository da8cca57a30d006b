#include "command/backups/Kind.h"

#include <algorithm>

#include "plugin/src/Listing.h"

namespace backups {

using host::operator""_t;

namespace {

constexpr stowline::SkinFiles kSkins[] = {stowline::kAtileFiles, stowline::kVfdSkinFiles};

}  // namespace

constexpr Kind kFileKinds[] = {
    {.word = "settings",
     .last_good = "last good settings",
     .restoretype = "settingrestore",
     .job = "settings",
     .operation = "createSettingFile"_t,
     .file = "settingfile"_t,
     .places = stowline::kChannelFiles,
     .deleted_first = stowline::kChannelFiles},
    {.word = "configuration",
     .last_good = "last good configuration",
     .restoretype = "configrestore",
     .job = "config",
     .operation = "createConfigFile"_t,
     .file = "configfile"_t,
     .places = stowline::kConfigPlaces,
     .exclusions = stowline::kConfigExcludes,
     .companions = stowline::kCompanions,
     .is_confirmed = true},
    {.word = "plugins",
     .last_good = "last good plugins",
     .restoretype = "plugininstall",
     .job = "plugins",
     .operation = "createPluginList"_t,
     .file = "pluginfile"_t,
     .is_list = true},
    {.word = "user files", .operation = ""_t, .file = ""_t, .skins = kSkins},
    {.word = "unknown", .operation = ""_t, .file = ""_t},
};

static_assert(kUserFiles.word == std::string_view("user files") &&
              kUnknown.word == std::string_view("unknown"));

bool isOfKind(const std::string& name, const Kind& kind) {
  return std::ranges::any_of(stowline::kListedKinds, [&](const stowline::ListedKind& listed) {
    return listed.restoretype.characters() == kind.restoretype && isListed(listed, name);
  });
}

bool isLargeEnough(const Kind& kind, long long size) {
  return kind.is_list || size >= stowline::kSmallestArchive;
}

const Kind& kindOf(const std::string& name) {
  for (const Kind& kind : kKinds) {
    if (isOfKind(name, kind)) return kind;
    for (const std::string_view ending : kind.companions) {
      if (name.ends_with(ending) && isOfKind(name.substr(0, name.size() - ending.size()), kind)) {
        return kUserFiles;
      }
    }
  }
  return kUnknown;
}

std::vector<std::string> patternsOf(const Kind& kind) {
  std::vector<std::string> patterns(kind.places.begin(), kind.places.end());
  for (const stowline::SkinFiles& skin : kind.skins) {
    for (const char* start : skin.start_strings) patterns.push_back(std::string(start) + "*");
  }
  if (&kind != &kUnknown) return patterns;
  for (const Kind& other : std::span(kFileKinds).first(std::size(kFileKinds) - 1)) {
    const std::vector<std::string> more = patternsOf(other);
    patterns.insert(patterns.end(), more.begin(), more.end());
  }
  return patterns;
}

tarball::Places placesOf(const Kind& kind) {
  return {patternsOf(kind), {kind.exclusions.begin(), kind.exclusions.end()}};
}

}  // namespace backups
