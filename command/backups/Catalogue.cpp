#include "command/backups/Catalogue.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "command/backups/FileKind.h"
#include "command/backups/RestoreScreen.h"
#include "host/look/Host.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/BoxTypes.h"
#include "plugin/src/Setup.h"

namespace backups {
namespace {

/// A model with fewer scheduled backups has none that the next one could make too many.
constexpr int kFewestToDelete = 3;

/// What the module makes of a file that is listed for some model.
struct Judged {
  bool is_taken = false;   ///< whether OK does anything with it where it is listed
  bool is_listed = false;  ///< for the model to decide for, or for any where there is none
};

/// The listed files of one kind, in the list's order.
using Listed = std::map<std::string, Judged, std::greater<>>;

/// Looks into a medium with the module's own code.
class Reader {
 public:
  Reader(const std::filesystem::path& medium, std::string model)
      : model_(std::move(model)), system_(std::nullopt), host_(system_, model_, "") {
    stowline::load(host_);
    std::string mount_point = stowline::backupRestorePathSetting(host_).value();
    while (mount_point.ends_with('/')) mount_point.pop_back();
    system_.mount(mount_point, native::Root(medium));
    const auto directory = stowline::getBackupRestorePath(host_);
    if (!directory) throw std::runtime_error("cannot read '" + medium.string() + "'");
    directory_ = *directory;
    const std::string name = directory_.substr(mount_point.size() + 1);
    catalogue_.directory = (medium / name).string();
    if (!system_.exists(directory_)) {
      const bool is_inside = medium.lexically_normal().filename() == name;
      throw std::runtime_error("there are no backups: '" + medium.string() + "' has no directory " +
                               name + (is_inside ? "; name the directory that it lies in" : ""));
    }
  }

  Catalogue read() {
    names_ = system_.listdir(directory_);
    std::ranges::sort(names_);
    for (const std::string& name : names_) said_.emplace(name, parseSetName(name));
    chooseModels();
    for (const Kind& kind : kKinds) {
      for (const auto& [name, judged] : listed(kind)) addSet(kind, name, judged);
    }
    addOthers();
    for (const std::string& model : scheduledModels()) addOutdated(model);
    return std::move(catalogue_);
  }

 private:
  static bool isBoxType(const std::string& model) {
    return std::ranges::find(stowline::kBoxTypes, model) != std::end(stowline::kBoxTypes);
  }

  /// The models whose next scheduled backup is meant: the one asked for, or every one that has as
  /// many of them as stay, and every known one where a backup's name does not say.
  std::set<std::string> scheduledModels() const {
    if (!model_.empty()) return {model_};
    std::set<std::string> models;
    const auto is_silent = [](const BackupSet& set) { return !set.said.has_value(); };
    if (std::ranges::any_of(catalogue_.sets, is_silent)) {
      models.insert(std::begin(stowline::kBoxTypes), std::end(stowline::kBoxTypes));
    }
    std::map<std::string, int> counts;
    for (const auto& [name, said] : said_) {
      if (said && said->is_scheduled && ++counts[said->model] >= kFewestToDelete) {
        models.insert(said->model);
      }
    }
    return models;
  }

  /// A file is listed for the receivers of its model, so those of every model that a name is of
  /// are asked; of all models where a name does not say. Models that have no tag of their own list
  /// alike: one of them is asked.
  void chooseModels() {
    bool has_other = !model_.empty() && !isBoxType(model_);
    if (!model_.empty()) asked_.insert(model_);
    for (const auto& [name, said] : said_) {
      if (!said) {
        asked_.insert(std::begin(stowline::kBoxTypes), std::end(stowline::kBoxTypes));
      } else if (isBoxType(said->model)) {
        asked_.insert(said->model);
      } else if (!has_other) {
        asked_.insert(said->model);
        has_other = true;
      }
    }
  }

  Listed listed(const Kind& kind) {
    Listed all;
    for (const std::string& model : asked_) {
      look::Host host(system_, model, "");
      stowline::load(host);
      RestoreScreen screen(host, kind.restoretype);
      const bool decides = model_.empty() || model == model_;
      for (std::size_t row = 0; row < screen.rows().size(); ++row) {
        Judged& judged = all[screen.rows()[row]];
        if (!decides || judged.is_listed) continue;
        judged = {.is_taken = screen.pressOk(row).is_taken, .is_listed = true};
      }
    }
    return all;
  }

  void addSet(const Kind& kind, const std::string& name, const Judged& judged) {
    BackupSet set{.kind = kind.name,
                  .file = fileOf(name),
                  .said = said_.at(name),
                  .keeps = {},
                  .companions = {},
                  .restore = judged.is_taken ? Restore::yes : Restore::too_small};
    if (judged.is_taken && !isShellWord(name)) set.restore = Restore::odd_name;
    if (!judged.is_listed) set.restore = Restore::other_model;
    if (!system_.isFile(directory_ + "/" + name)) set.restore = Restore::no_file;
    if (kind.name == std::string_view("configuration")) {
      set.keeps = keptOf(name, set.said);
      set.companions = companionsOf(name);
    }
    known_.insert(name);
    catalogue_.size += set.file.size;
    for (const File& companion : set.companions) {
      known_.insert(companion.name);
      catalogue_.size += companion.size;
    }
    catalogue_.sets.push_back(std::move(set));
  }

  /// Returns what a restore of a configuration keeps, asked once for all of the same version.
  const std::vector<std::string>& keptOf(const std::string& name,
                                         const std::optional<SetName>& said) {
    const auto [kept, is_new] = kept_.try_emplace(said ? "version " + said->version : name);
    if (is_new) kept->second = keptBy(configurationRestore(host_, directory_ + "/" + name));
    return kept->second;
  }

  std::vector<File> companionsOf(const std::string& name) {
    std::vector<File> companions;
    for (const std::string& ending : endings_) {
      if (std::ranges::binary_search(names_, name + ending)) {
        companions.push_back(fileOf(name + ending));
      }
    }
    return companions;
  }

  void addOthers() {
    catalogue_.others = names_;
    std::erase_if(catalogue_.others,
                  [this](const std::string& name) { return known_.contains(name); });
  }

  /// Lets the engine write the next scheduled backup and keep house.
  void addOutdated(const std::string& model) {
    look::Host host(system_, model, "");
    stowline::load(host);
    stowline::BackupActions engine(host, "auto");
    engine.createSettingFile();
    engine.createConfigFile();
    engine.createPluginList();
    std::set<std::string> next;
    for (const std::string& file : {engine.settingfile, engine.configfile, engine.pluginfile}) {
      if (system_.exists(file)) continue;
      next.insert(file);
      system_.pretend(file);
    }
    engine.houseKeeping();
    for (const std::string& file : system_.takeRemoved()) {
      if (!next.contains(file)) catalogue_.outdated.push_back(file.substr(directory_.size() + 1));
    }
  }

  /// What is no file has no size.
  File fileOf(const std::string& name) {
    const std::string path = directory_ + "/" + name;
    return {name, system_.isFile(path) ? system_.fileSize(path) : 0};
  }

  std::string model_;
  look::System system_;
  look::Host host_;                 ///< for what does not depend on the model
  std::string directory_;           ///< as the receiver names it
  std::vector<std::string> names_;  ///< of all files in the directory, sorted
  std::unordered_map<std::string, std::optional<SetName>> said_;  ///< by their names
  const std::vector<std::string> endings_ = companionEndings();
  std::map<std::string, std::vector<std::string>> kept_;  ///< by version, or by name without one
  std::set<std::string> asked_;                           ///< the models whose lists are asked
  std::unordered_set<std::string> known_;
  Catalogue catalogue_;
};

}  // namespace

Catalogue readCatalogue(const std::filesystem::path& medium, const std::string& model) {
  return Reader(medium, model).read();
}

}  // namespace backups
