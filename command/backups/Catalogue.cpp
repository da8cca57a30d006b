#include "Catalogue.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "BackupActions.h"
#include "BoxTypes.h"
#include "RestoreScreen.h"
#include "Setup.h"
#include "look/Host.h"

namespace backups {
namespace {

/// What the module makes of a listed file.
struct Judged {
  bool is_taken;   ///< whether OK does anything with it
  bool is_listed;  ///< for the model to decide for
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
      throw std::runtime_error("there are no backups: '" + medium.string() + "' has no directory " +
                               name);
    }
  }

  Catalogue read() {
    chooseModels();
    for (const Kind& kind : kKinds) {
      for (const auto& [name, judged] : listed(kind)) addSet(kind, name, judged);
    }
    addOthers();
    for (const std::string& model : models()) addOutdated(model);
    return std::move(catalogue_);
  }

 private:
  /// The models to decide for.
  std::vector<std::string> models() const {
    if (!model_.empty()) return {model_};
    return {std::begin(stowline::kBoxTypes), std::end(stowline::kBoxTypes)};
  }

  /// A file is listed for the receivers of its model, so those of every model that a name is of
  /// are asked; of all models where a name does not say.
  void chooseModels() {
    asked_.insert(models().front());
    for (const std::string& name : system_.listdir(directory_)) {
      const auto said = parseSetName(name);
      if (said) {
        asked_.insert(said->model);
      } else {
        asked_.insert(std::begin(stowline::kBoxTypes), std::end(stowline::kBoxTypes));
      }
    }
  }

  Listed listed(const Kind& kind) {
    Listed all;
    for (const std::string& model : asked_) {
      look::Host host(system_, model, "");
      stowline::load(host);
      RestoreScreen screen(host, kind.restoretype);
      for (std::size_t row = 0; row < screen.rows().size(); ++row) {
        const auto [listed, is_new] = all.try_emplace(screen.rows()[row]);
        if (is_new) listed->second.is_taken = screen.pressOk(row).is_taken;
        if (model == model_) listed->second.is_listed = true;
      }
    }
    return all;
  }

  void addSet(const Kind& kind, const std::string& name, const Judged& judged) {
    std::vector<std::string> commands;
    if (kind.name == std::string_view("configuration")) {
      commands = configurationRestore(host_, directory_ + "/" + name);
    }
    BackupSet set{.kind = kind.name,
                  .file = fileOf(name),
                  .said = parseSetName(name),
                  .keeps = keptBy(commands),
                  .companions = {},
                  .restore = judged.is_taken ? Restore::yes : Restore::too_small};
    if (!model_.empty() && !judged.is_listed) set.restore = Restore::other_model;
    known_.insert(name);
    catalogue_.size += set.file.size;
    for (const std::string& archive : unpackedBy(commands)) {
      const std::string companion = archive.substr(directory_.size() + 1);
      if (companion == name) continue;
      set.companions.push_back(fileOf(companion));
      known_.insert(companion);
      catalogue_.size += set.companions.back().size;
    }
    catalogue_.sets.push_back(std::move(set));
  }

  void addOthers() {
    catalogue_.others = system_.listdir(directory_);
    std::erase_if(catalogue_.others,
                  [this](const std::string& name) { return known_.contains(name); });
    std::ranges::sort(catalogue_.others);
  }

  /// Lets the engine write the next scheduled backup and keep house.
  void addOutdated(const std::string& model) {
    look::Host host(system_, model, "");
    stowline::load(host);
    stowline::BackupActions engine(host, "auto");
    engine.createSettingFile();
    engine.createConfigFile();
    engine.createPluginList();
    for (const std::string& file : {engine.settingfile, engine.configfile, engine.pluginfile}) {
      system_.pretend(file);
    }
    engine.houseKeeping();
    for (const std::string& file : system_.takeRemoved()) {
      catalogue_.outdated.push_back(file.substr(directory_.size() + 1));
    }
  }

  File fileOf(const std::string& name) { return {name, system_.fileSize(directory_ + "/" + name)}; }

  std::string model_;
  look::System system_;
  look::Host host_;              ///< for what does not depend on the model
  std::string directory_;        ///< as the receiver names it
  std::set<std::string> asked_;  ///< the models whose lists are asked
  std::set<std::string> known_;
  Catalogue catalogue_;
};

}  // namespace

Catalogue readCatalogue(const std::filesystem::path& medium, const std::string& model) {
  return Reader(medium, model).read();
}

}  // namespace backups
