#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "base/Escape.h"
#include "command/Commands.h"
#include "command/backups/Catalogue.h"
#include "command/output/Table.h"
#include "host/native/NativeSystem.h"
#include "host/plain/Model.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;
using backups::BackupSet;
using backups::Catalogue;
using backups::Restore;

/// Returns the word for what a restore list makes of a backup.
const char* wordOf(Restore restore) {
  switch (restore) {
    case Restore::yes:
      return "yes";
    case Restore::too_small:
      return "too small";
    case Restore::no_file:
      return "no file";
    case Restore::odd_name:
      return "odd name";
    default:
      return "other model";
  }
}

template <class Items, class Text>
std::string joined(const Items& items, const char* separator, Text text) {
  std::string all;
  for (const auto& item : items) all += (all.empty() ? "" : separator) + text(item);
  return all;
}

/// Returns a companion by what tells it from its archive: "user_files".
std::string companionText(const BackupSet& set, const backups::File& companion) {
  return companion.name.substr(set.file.name.size() + 1);
}

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string keptText(const BackupSet& set) {
  if (!set.kind->is_confirmed) return "";
  return set.keeps.empty() ? "nothing" : joined(set.keeps, " ", baseName);
}

void printTable(const Catalogue& catalogue) {
  output::Table table({{"KIND"},
                       {"DATE"},
                       {"MODEL"},
                       {"BY"},
                       {"VERSION"},
                       {"RESTORE KEEPS"},
                       {"SIZE", true},
                       {"RESTORE LIST"},
                       {"FILE"},
                       {"WITH"}});
  for (const BackupSet& set : catalogue.sets) {
    const backups::SetName said = set.said.value_or(backups::SetName{});
    table.add({set.kind->word, said.time, base::escapeControls(said.model),
               set.said ? (said.is_scheduled ? "timer" : "hand") : "",
               base::escapeControls(said.version), keptText(set), output::sizeText(set.file.size),
               wordOf(set.restore), base::escapeControls(set.file.name),
               joined(set.companions, " ", [&](const backups::File& companion) {
                 return companionText(set, companion);
               })});
  }
  if (!catalogue.sets.empty()) table.print(std::cout);
}

void printText(const Catalogue& catalogue, const std::string& model) {
  printTable(catalogue);
  std::cout << output::counted(catalogue.sets.size(), "backup") << ", "
            << output::sizeText(catalogue.size) << " in "
            << base::escapeControls(catalogue.directory) << "\n";
  const auto is_other = [](const BackupSet& set) { return set.restore == Restore::other_model; };
  if (!catalogue.sets.empty() && std::ranges::all_of(catalogue.sets, is_other)) {
    std::cout << "none of them is for a receiver of the model " << base::escapeControls(model)
              << "\n";
  }
  if (!catalogue.others.empty()) {
    std::cout << "other files: " << joined(catalogue.others, " ", base::escapeControls) << "\n";
  }
  if (catalogue.outdated.empty()) {
    std::cout << "the next scheduled backup deletes nothing\n";
  } else {
    std::cout << "the next scheduled backup deletes:\n";
    for (const std::string& name : catalogue.outdated) {
      std::cout << "  " << base::escapeControls(name) << "\n";
    }
  }
}

Json jsonOf(const backups::File& file) {
  return {{"name", base::escapeInvalidUtf8(file.name)}, {"size", file.size}};
}

Json textsOf(const std::vector<std::string>& texts) {
  Json all = Json::array();
  for (const std::string& text : texts) all.push_back(base::escapeInvalidUtf8(text));
  return all;
}

Json jsonOf(const BackupSet& set) {
  Json json = {{"kind", set.kind->word}, {"name", base::escapeInvalidUtf8(set.file.name)}};
  json["size"] = set.file.size;
  json["time"] = set.said ? Json(set.said->time) : Json();
  json["model"] = set.said ? Json(base::escapeInvalidUtf8(set.said->model)) : Json();
  json["scheduled"] = set.said ? Json(set.said->is_scheduled) : Json();
  json["version"] = set.said && !set.said->version.empty()
                        ? Json(base::escapeInvalidUtf8(set.said->version))
                        : Json();
  json["keeps"] = textsOf(set.keeps);
  json["companions"] = Json::array();
  for (const backups::File& companion : set.companions) {
    json["companions"].push_back(jsonOf(companion));
  }
  json["restorable"] = wordOf(set.restore);
  return json;
}

Json jsonOf(const Catalogue& catalogue, const std::string& model) {
  Json json = {{"directory", base::escapeInvalidUtf8(catalogue.directory)}};
  json["model"] = model.empty() ? Json() : Json(base::escapeInvalidUtf8(model));
  json["sets"] = Json::array();
  for (const BackupSet& set : catalogue.sets) json["sets"].push_back(jsonOf(set));
  json["others"] = textsOf(catalogue.others);
  json["size"] = catalogue.size;
  json["next_scheduled_deletes"] = textsOf(catalogue.outdated);
  return json;
}

/// Returns the model of the receiver that this runs on, "" where there is none.
std::string ownModel() {
  native::NativeSystem os;
  return os.exists(plain::kModelFile) ? plain::readModel(os) : "";
}

}  // namespace

void runList(const ListOptions& options) {
  const std::string model = options.model.empty() ? ownModel() : options.model;
  const Catalogue catalogue = backups::readCatalogue(options.medium, model);
  if (options.json) {
    std::cout << jsonOf(catalogue, model).dump(2) << "\n";
  } else {
    printText(catalogue, model);
  }
}

}  // namespace command
