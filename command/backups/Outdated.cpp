#include "command/backups/Outdated.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "command/backups/Engine.h"
#include "host/dryrun/Host.h"
#include "host/plain/Node.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Setup.h"

namespace backups {
namespace {

using host::operator""_t;

/// What stands behind the model in the name of a scheduled backup.
constexpr std::string_view kBehindModel = ".auto.";

/// A model with fewer scheduled backups has none that the next one could make too many.
constexpr std::size_t kFewestToDelete = 3;

/// How many files the engine gets to see at once, beside those that have stayed.
constexpr std::size_t kPortion = 1000;

/// A scheduled backup or what may go with one.
struct Scheduled {
  std::string_view stem;   ///< its name up to the end of the model
  std::string_view model;  ///< the stem from where the model seems to begin
  File* file;
  bool is_backup;
};

/// Compares texts from their ends: those that end alike stand together, the shortest first.
bool endsBefore(std::string_view left, std::string_view right) {
  const auto differ = std::mismatch(left.rbegin(), left.rend(), right.rbegin(), right.rend());
  if (differ.second == right.rend()) return false;
  return differ.first == left.rend() || *differ.first < *differ.second;
}

std::vector<Scheduled> scheduledIn(Catalogue& catalogue) {
  std::vector<Scheduled> all;
  const auto add = [&](File& file, bool is_backup) {
    const std::string_view name = file.name;
    const std::size_t end = name.rfind(kBehindModel);
    if (end == std::string_view::npos) return;
    const std::string_view stem = name.substr(0, end);
    all.push_back({stem, stem.substr(stem.rfind('_') + 1), &file, is_backup});
  };
  for (BackupSet& set : catalogue.sets) {
    add(set.file, true);
    for (File& companion : set.companions) add(companion, false);
  }
  for (File& other : catalogue.others) add(other, false);
  return all;
}

/// Returns the models that any of the names can be of, but for those whose name ends with that of
/// another: whatever the next backup of such a model deletes, that of the other deletes, too.
std::vector<std::string_view> modelsOf(const std::vector<Scheduled>& all) {
  std::vector<std::string_view> models(std::begin(stowline::kBoxTypes),
                                       std::end(stowline::kBoxTypes));
  for (const Scheduled& one : all) {
    const bool is_named = !one.model.empty() && one.model.size() < one.stem.size();
    if (is_named && one.model != models.back()) models.push_back(one.model);
  }
  std::ranges::sort(models, endsBefore);
  std::vector<std::string_view> ends;
  for (const std::string_view model : models) {
    if (ends.empty() || !model.ends_with(ends.back())) ends.push_back(model);
  }
  return ends;
}

/// Returns those whose model ends with `model`.
std::span<const Scheduled> ofModel(std::string_view model, const std::vector<Scheduled>& all) {
  const auto first = std::ranges::lower_bound(all, model, endsBefore, &Scheduled::model);
  const auto last = std::partition_point(
      first, all.end(), [model](const Scheduled& one) { return one.stem.ends_with(model); });
  return {first, last};
}

/// A receiver whose backup directory has the scheduled backups of one model alone, and the next
/// one.
class Receiver : public dryrun::System {
 public:
  Receiver() : System(std::nullopt), host_(*this, "", "") {
    host_.bind("print", [](host::Arguments /*line*/) { return host::Object(); });
    host_.bind("listdir", [this](host::Arguments /*path*/) { return listing(); });
    stowline::load(host_.module());
    start_ = backupDirectory(host_).value() + "/";
    host_.setModel("");
    engine_ = host_.module()["BackupActions"_t]({"auto"_t});
    for (const Kind& kind : kKinds) {
      engine_.call(kind.operation, {});
      next_.push_back(plain::textOf(engine_.get(kind.file)).substr(start_.size()));
    }
  }

  /// Lets the engine of a model keep house after its next backup. It does so in portions, to take
  /// little memory: what it deletes among some files, it deletes among more of them, too.
  void keepHouse(const std::string& model, std::span<const Scheduled> files) {
    engine_.set("boxtype"_t, model);
    files_.assign(files.begin(), files.end());
    std::ranges::sort(files_, {}, &nameOf);
    listed_.clear();
    for (std::string name : next_) {
      name.insert(name.rfind(kBehindModel), model);
      if (!find(name)) listed_.push_back(std::move(name));
    }
    for (std::size_t done = 0; done < files_.size();) {
      for (const std::size_t end = std::min(done + kPortion, files_.size()); done < end; ++done) {
        if (files_[done].is_backup) listed_.push_back(nameOf(files_[done]));
      }
      engine_.call("houseKeeping"_t, {});
      std::erase_if(listed_, [this](const std::string& name) {
        const File* file = find(name);
        return file && file->is_outdated;
      });
    }
  }

  bool exists(const std::string& path) override {
    if (!path.starts_with(start_)) return true;
    const File* file = find(std::string_view(path).substr(start_.size()));
    return file && file->exists;
  }

  void remove(const std::string& path) override {
    find(std::string_view(path).substr(start_.size()))->is_outdated = true;
  }

  int system(const std::string& /*command*/) override { return 0; }

 private:
  host::Object listing() const {
    host::Object names = host::list();
    for (const std::string& name : listed_) names.append(name);
    return names;
  }

  static const std::string& nameOf(const Scheduled& one) { return one.file->name; }

  File* find(std::string_view name) const {
    const auto found = std::ranges::lower_bound(files_, name, std::less<>(), &nameOf);
    return found != files_.end() && nameOf(*found) == name ? found->file : nullptr;
  }

  dryrun::Host host_;
  host::Object engine_;
  std::string start_;              ///< of the paths in the backup directory
  std::vector<std::string> next_;  ///< the names of the next backup, without a model
  std::vector<Scheduled> files_;   ///< sorted by name
  std::vector<std::string> listed_;
};

}  // namespace

void markOutdated(Catalogue& catalogue, const std::string& model) {
  std::vector<Scheduled> all = scheduledIn(catalogue);
  Receiver receiver;
  if (!model.empty()) {
    std::erase_if(all, [&](const Scheduled& one) { return !one.stem.ends_with(model); });
    receiver.keepHouse(model, all);
    return;
  }
  std::ranges::sort(all, endsBefore, &Scheduled::model);
  for (const std::string_view one : modelsOf(all)) {
    const std::span<const Scheduled> files = ofModel(one, all);
    if (files.size() >= kFewestToDelete) receiver.keepHouse(std::string(one), files);
  }
}

}  // namespace backups
