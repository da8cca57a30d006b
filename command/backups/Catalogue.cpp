#include "command/backups/Catalogue.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

#include "base/Answer.h"
#include "base/Root.h"
#include "base/SystemError.h"
#include "command/backups/Engine.h"
#include "command/backups/RestoreScreen.h"
#include "host/dryrun/Host.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Setup.h"

namespace backups {
namespace {

/// Looks into a medium with the module's own code.
class Reader {
 public:
  Reader(const std::filesystem::path& medium, std::string model)
      : model_(std::move(model)), system_(std::nullopt), host_(system_, "", ""), root_(medium) {
    stowline::load(host_.module());
    directory_ = backupDirectory(host_).value();
    const std::string name = directory_.substr(directory_.rfind('/') + 1);
    place_ = "/" + name + "/";
    catalogue_.directory = (medium / name).string();
  }

  Catalogue read() {
    std::vector<std::string> names = listNames();
    std::ranges::sort(names, std::greater());  // as the restore list does
    std::vector<const Kind*> kinds;
    kinds.reserve(names.size());
    for (const std::string& name : names) kinds.push_back(&kindOf(name));
    const auto is_set = [](const Kind* kind) { return !kind->restoretype.empty(); };
    catalogue_.sets.reserve(static_cast<std::size_t>(std::ranges::count_if(kinds, is_set)));
    for (const Kind& kind : kKinds) {
      for (std::size_t at = 0; at < names.size(); ++at) {
        if (kinds[at] == &kind) addSet(kind, std::move(names[at]));
      }
    }
    for (std::size_t at = names.size(); at-- > 0;) {
      if (!is_set(kinds[at])) addOther(std::move(names[at]));
    }
    return std::move(catalogue_);
  }

 private:
  std::vector<std::string> listNames() const {
    base::requireAnswer(catalogue_.directory);
    try {
      if (root_.status(place_)) return root_.names(place_);
    } catch (const base::SystemError& error) {
      throw base::SystemError(error.code().value(), catalogue_.directory);
    }
    const std::filesystem::path directory = catalogue_.directory;
    const std::string name = directory.filename().string();
    const std::filesystem::path medium = directory.parent_path();
    const bool is_inside = medium.lexically_normal().filename() == name;
    throw std::runtime_error("there are no backups: '" + medium.string() + "' has no directory " +
                             name + (is_inside ? "; name the directory that it lies in" : ""));
  }

  void addSet(const Kind& kind, std::string name) {
    BackupSet set{.kind = &kind,
                  .file = fileOf(std::move(name)),
                  .keeps = {},
                  .companions = {},
                  .restore = Restore::yes};
    if (kind.is_confirmed) {
      set.keeps = keptFiles(host_, directory_ + "/" + set.file.name);
    }
    set.restore = restoreOf(kind, set.file);
    catalogue_.size += set.file.size;
    catalogue_.sets.push_back(std::move(set));
  }

  /// Adds a file to the set that it is a companion of, or else to the others.
  void addOther(std::string name) {
    BackupSet* const set = setOf(name);
    std::vector<File>& files = set ? set->companions : catalogue_.others;
    files.push_back(fileOf(std::move(name)));
    if (set) catalogue_.size += files.back().size;
  }

  /// Returns the set that a companion of this name belongs to, null for none.
  BackupSet* setOf(std::string_view companion) {
    for (const Kind& kind : kKinds) {
      for (const std::string_view ending : kind.companions) {
        if (!companion.ends_with(ending)) continue;
        const auto name = companion.substr(0, companion.size() - ending.size());
        const auto is_before = [&](const BackupSet& set) {
          return set.kind == &kind ? set.file.name > name : set.kind < &kind;
        };
        const auto set = std::ranges::partition_point(catalogue_.sets, is_before);
        if (set != catalogue_.sets.end() && set->file.name == name) return &*set;
      }
    }
    return nullptr;
  }

  Restore restoreOf(const Kind& kind, const File& file) const {
    if (file.error != 0) return Restore::unreadable;
    if (!file.is_regular) return Restore::no_file;
    if (!model_.empty() && !stowline::isForBox(file.name, model_)) return Restore::other_model;
    if (!isLargeEnough(kind, file.size)) return Restore::too_small;
    return isShellWord(file.name) ? Restore::yes : Restore::odd_name;
  }

  File fileOf(std::string name) const {
    File file{.name = std::move(name)};
    try {
      const auto status = root_.status(place_ + file.name);
      file.exists = status.has_value();
      file.is_regular = status && S_ISREG(status->st_mode);
      if (file.is_regular) file.size = status->st_size;
    } catch (const base::SystemError& error) {
      file.error = error.code().value();
    }
    return file;
  }

  std::string model_;
  dryrun::System system_;
  dryrun::Host host_;  ///< for what does not depend on the model
  base::Root root_;
  std::string directory_;  ///< the backup directory, as the receiver names it
  std::string place_;      ///< the same below the medium, with a "/" at its end
  Catalogue catalogue_;
};

}  // namespace

Catalogue readCatalogue(const std::filesystem::path& medium, const std::string& model) {
  base::requireAnswer(medium.string());
  return Reader(medium, model).read();
}

}  // namespace backups
