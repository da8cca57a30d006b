#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>

#include "base/Escape.h"
#include "command/Commands.h"
#include "command/backups/Catalogue.h"
#include "command/backups/Outdated.h"
#include "command/output/JsonWriter.h"
#include "command/output/Table.h"
#include "host/native/NativeSystem.h"
#include "host/plain/Model.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;
using backups::BackupSet;
using backups::Catalogue;
using backups::File;
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
    case Restore::unreadable:
      return "unreadable";
    case Restore::other_model:
      break;
  }
  return "other model";
}

template <class Items, class Text>
std::string joined(const Items& items, const char* separator, Text text) {
  std::string all;
  for (const auto& item : items) all += (all.empty() ? "" : separator) + text(item);
  return all;
}

/// Returns a companion by what tells it from its archive: "user_files".
std::string companionText(const BackupSet& set, const File& companion) {
  return companion.name.substr(set.file.name.size() + 1);
}

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string keptText(const BackupSet& set) {
  if (!set.kind->is_confirmed) return "";
  return set.keeps.empty() ? "nothing" : joined(set.keeps, " ", baseName);
}

std::vector<std::string> cellsOf(const BackupSet& set) {
  const auto said = set.said();
  return {set.kind->word,
          said ? said->time : "",
          said ? base::escapeControls(said->model) : "",
          said ? (said->is_scheduled ? "timer" : "hand") : "",
          said ? base::escapeControls(said->version) : "",
          keptText(set),
          output::sizeText(set.file.size),
          wordOf(set.restore),
          base::escapeControls(set.file.name),
          joined(set.companions, " ",
                 [&](const File& companion) { return companionText(set, companion); })};
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
  for (const BackupSet& set : catalogue.sets) table.add(cellsOf(set));
  table.print(std::cout);
}

/// Calls `use` with every file.
template <class Use>
void eachFile(const Catalogue& catalogue, const Use& use) {
  for (const BackupSet& set : catalogue.sets) {
    use(set.file);
    std::ranges::for_each(set.companions, use);
  }
  std::ranges::for_each(catalogue.others, use);
}

std::string whyUnreadable(const File& file) {
  return std::generic_category().message(file.error);
}

void printUnreadable(const Catalogue& catalogue) {
  eachFile(catalogue, [](const File& file) {
    if (file.error == 0) return;
    std::cout << "cannot be read: " << base::escapeControls(file.name) << ": "
              << whyUnreadable(file) << "\n";
  });
}

void printOutdated(const Catalogue& catalogue) {
  bool has_any = false;
  eachFile(catalogue, [&](const File& file) {
    if (!file.is_outdated) return;
    if (!has_any) std::cout << "the next scheduled backup deletes:\n";
    std::cout << "  " << base::escapeControls(file.name) << "\n";
    has_any = true;
  });
  if (!has_any) std::cout << "the next scheduled backup deletes nothing\n";
}

void printText(const Catalogue& catalogue, const std::string& model) {
  if (!catalogue.sets.empty()) printTable(catalogue);
  std::cout << output::counted(catalogue.sets.size(), "backup") << ", "
            << output::sizeText(catalogue.size) << " in "
            << base::escapeControls(catalogue.directory) << "\n";
  const auto is_other = [](const BackupSet& set) { return set.restore == Restore::other_model; };
  if (!catalogue.sets.empty() && std::ranges::all_of(catalogue.sets, is_other)) {
    std::cout << "none of them is for a receiver of the model " << base::escapeControls(model)
              << "\n";
  }
  if (!catalogue.others.empty()) std::cout << "other files:\n";
  for (const File& other : catalogue.others) {
    std::cout << "  " << base::escapeControls(other.name) << "\n";
  }
  printUnreadable(catalogue);
  printOutdated(catalogue);
}

Json jsonOf(const File& file) {
  return {{"name", base::escapeInvalidUtf8(file.name)}, {"size", file.size}};
}

Json jsonOf(const BackupSet& set) {
  const auto said = set.said();
  Json json = {{"kind", set.kind->word}, {"name", base::escapeInvalidUtf8(set.file.name)}};
  json["size"] = set.file.size;
  json["time"] = said ? Json(said->time) : Json();
  json["model"] = said ? Json(base::escapeInvalidUtf8(said->model)) : Json();
  json["scheduled"] = said ? Json(said->is_scheduled) : Json();
  json["version"] =
      said && !said->version.empty() ? Json(base::escapeInvalidUtf8(said->version)) : Json();
  json["keeps"] = set.keeps;
  json["companions"] = Json::array();
  for (const File& companion : set.companions) {
    json["companions"].push_back(jsonOf(companion));
  }
  json["restorable"] = wordOf(set.restore);
  return json;
}

void printJson(const Catalogue& catalogue, const std::string& model) {
  output::JsonWriter json(std::cout);
  json.openObject();
  json.add("directory", base::escapeInvalidUtf8(catalogue.directory));
  json.add("model", model.empty() ? Json() : Json(base::escapeInvalidUtf8(model)));
  json.openList("sets");
  for (const BackupSet& set : catalogue.sets) json.addItem(jsonOf(set));
  json.close();
  json.openList("others");
  for (const File& other : catalogue.others) json.addItem(base::escapeInvalidUtf8(other.name));
  json.close();
  json.openList("unreadable");
  eachFile(catalogue, [&](const File& file) {
    if (file.error == 0) return;
    json.addItem({{"name", base::escapeInvalidUtf8(file.name)}, {"error", whyUnreadable(file)}});
  });
  json.close();
  json.add("size", catalogue.size);
  json.openList("next_scheduled_deletes");
  eachFile(catalogue, [&](const File& file) {
    if (file.is_outdated) json.addItem(base::escapeInvalidUtf8(file.name));
  });
  json.close();
  json.close();
}

/// Returns the model of the receiver that this runs on, "" where there is none.
std::string ownModel() {
  native::NativeSystem os;
  return os.exists(plain::kModelFile) ? plain::readModel(os) : "";
}

}  // namespace

void runList(const ListOptions& options) {
  const std::string model = options.model.empty() ? ownModel() : options.model;
  Catalogue catalogue = backups::readCatalogue(options.medium, model);
  backups::markOutdated(catalogue, model);
  if (options.json) {
    printJson(catalogue, model);
  } else {
    printText(catalogue, model);
  }
}

}  // namespace command
