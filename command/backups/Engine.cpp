#include "command/backups/Engine.h"

#include <iterator>

#include "plugin/src/Places.h"

namespace backups {
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

}  // namespace backups
