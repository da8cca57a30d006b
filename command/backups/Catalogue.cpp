#include "command/backups/Catalogue.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "command/backups/Engine.h"
#include "command/backups/RestoreScreen.h"
#include "host/dryrun/Host.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Setup.h"

namespace backups {

using host::operator""_t;

namespace {

/// A model with fewer scheduled backups has none that the next one could make too many.
constexpr int kFewestToDelete = 3;

/// Looks into a medium with the module's own code.
class Reader {
 public:
  Reader(const std::filesystem::path& medium, std::string model)
      : model_(std::move(model)), system_(std::nullopt), host_(system_, model_, "") {
    stowline::load(host_.module());
    std::string mount_point = mediumOf(host_);
    while (mount_point.ends_with('/')) mount_point.pop_back();
    system_.mount(mount_point, base::Root(medium));
    const auto directory = backupDirectory(host_);
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
    for (const Kind& kind : kKinds) {
      for (auto name = names_.rbegin(); name != names_.rend(); ++name) {
        if (isOfKind(*name, kind)) addSet(kind, *name);
      }
    }
    addOthers();
    for (const std::string& model : scheduledModels()) addOutdated(model);
    return std::move(catalogue_);
  }

 private:
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

  void addSet(const Kind& kind, const std::string& name) {
    BackupSet set{.kind = &kind,
                  .file = fileOf(name),
                  .said = said_.at(name),
                  .keeps = {},
                  .companions = {},
                  .restore = restoreOf(kind, name)};
    if (kind.is_confirmed) set.keeps = keptOf(name, set.said);
    set.companions = companionsOf(kind, name);
    known_.insert(name);
    catalogue_.size += set.file.size;
    for (const File& companion : set.companions) {
      known_.insert(companion.name);
      catalogue_.size += companion.size;
    }
    catalogue_.sets.push_back(std::move(set));
  }

  Restore restoreOf(const Kind& kind, const std::string& name) {
    const std::string path = directory_ + "/" + name;
    if (!system_.isFile(path)) return Restore::no_file;
    if (!model_.empty() && !stowline::isForBox(name, model_)) return Restore::other_model;
    if (!isLargeEnough(kind, system_.fileSize(path))) return Restore::too_small;
    return isShellWord(name) ? Restore::yes : Restore::odd_name;
  }

  /// Returns what a restore of a configuration keeps, asked once for all of the same version.
  const std::vector<std::string>& keptOf(const std::string& name,
                                         const std::optional<SetName>& said) {
    const auto [kept, is_new] = kept_.try_emplace(said ? "version " + said->version : name);
    if (is_new) kept->second = keptFiles(host_, directory_ + "/" + name);
    return kept->second;
  }

  std::vector<File> companionsOf(const Kind& kind, const std::string& name) {
    std::vector<File> companions;
    for (const char* ending : kind.companions) {
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
    dryrun::Host host(system_, model, "");
    stowline::load(host.module());
    const host::Object engine = host.module()["BackupActions"_t]({"auto"_t});
    std::set<std::string> next;
    for (const Kind& kind : kKinds) {
      engine.call(kind.operation, {});
      const std::string file = plain::textOf(engine.get(kind.file));
      if (system_.exists(file)) continue;
      next.insert(file);
      system_.pretend(file);
    }
    engine.call("houseKeeping"_t, {});
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
  dryrun::System system_;
  dryrun::Host host_;               ///< for what does not depend on the model
  std::string directory_;           ///< as the receiver names it
  std::vector<std::string> names_;  ///< of all files in the directory, sorted
  std::unordered_map<std::string, std::optional<SetName>> said_;  ///< by their names
  std::map<std::string, std::vector<std::string>> kept_;  ///< by version, or by name without one
  std::unordered_set<std::string> known_;
  Catalogue catalogue_;
};

}  // namespace

Catalogue readCatalogue(const std::filesystem::path& medium, const std::string& model) {
  return Reader(medium, model).read();
}

}  // namespace backups
