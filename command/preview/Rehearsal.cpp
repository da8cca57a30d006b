#include "command/preview/Rehearsal.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "base/SystemError.h"
#include "command/backups/Engine.h"
#include "command/backups/Kind.h"
#include "command/backups/RestoreScreen.h"
#include "host/dryrun/Host.h"
#include "host/plain/Model.h"
#include "plugin/src/Listing.h"
#include "plugin/src/Setup.h"
#include "plugin/src/StowlineHelpScreen.h"

namespace preview {
namespace {

using host::operator""_t;

namespace fs = std::filesystem;

/// Whether the receiver's `path` is the directory `directory` of this machine.
bool isSame(const base::Root& receiver, const std::string& path, const base::Root& directory) {
  const auto one = receiver.status(path);
  const auto other = directory.status("/");
  return one && other && one->st_dev == other->st_dev && one->st_ino == other->st_ino;
}

/// A receiver on which the module restores.
class Stage {
 public:
  explicit Stage(const fs::path& receiver)
      : root_(receiver),
        dir_(fs::canonical(receiver)),
        system_(base::Root(receiver)),
        model_(modelOf(receiver)),
        settings_(openSettings()),
        host_(newHost()) {}

  Rehearsal rehearse(const fs::path& file) {
    const std::string name = file.filename().string();
    Rehearsal rehearsal{.model = model_,
                        .medium = insert(fs::canonical(fs::absolute(file).parent_path())),
                        .archive = "",
                        .refusal = "",
                        .commands = {},
                        .plan = {}};
    rehearsal.archive = rehearsal.medium.directory + "/" + name;
    for (const backups::Kind& kind : backups::kKinds) {
      if (tryRestore(kind, name, rehearsal)) return rehearsal;
    }
    rehearsal.refusal = whyUnlisted(name);
    return rehearsal;
  }

 private:
  std::string modelOf(const fs::path& receiver) {
    try {
      std::string model = plain::readModel(system_);
      if (!model.empty()) return model;
    } catch (const base::SystemError& error) {
      throw std::runtime_error(receiver.string() + " is no receiver: " + error.what());
    }
    throw std::runtime_error(receiver.string() + " is no receiver: its model has no name");
  }

  /// Opens the settings where they are a file: something else might never end.
  base::Descriptor openSettings() const {
    const auto status = root_.status(native::kSettingsFile);
    const bool is_file = status && S_ISREG(status->st_mode);
    return is_file ? root_.open(native::kSettingsFile) : base::Descriptor();
  }

  /// Returns a host with the receiver's settings, read by the open file: its path may lead out of
  /// the receiver.
  std::unique_ptr<dryrun::Host> newHost() {
    auto host = std::make_unique<dryrun::Host>(
        system_, model_, settings_ ? "/proc/self/fd/" + std::to_string(settings_.number()) : "");
    stowline::load(host->module());
    if (!medium_.empty()) stowline::mediumSetting(host->module())["value"_t] = medium_;
    return host;
  }

  std::string backupDirectory() {
    const auto directory = backups::backupDirectory(*host_);
    if (!directory) throw std::runtime_error("the receiver's medium cannot be read");
    return *directory;
  }

  /// Makes `directory` the receiver's backup directory: as that which it is, or in the place of it.
  Medium insert(const fs::path& directory) {
    base::Root files(directory);
    const std::string own = backupDirectory();
    if (isSame(root_, own, files)) return {base::Root(dir_), "", own};
    const fs::path inside = directory.lexically_relative(dir_);
    if (!inside.empty() && *inside.begin() != "..") {
      const std::string path = (fs::path("/") / inside).string();
      medium_ = fs::path(path).parent_path().string();
      host_ = newHost();
      if (backupDirectory() == path) return {base::Root(dir_), "", path};
      medium_.clear();
      host_ = newHost();
    }
    system_.mount(own, base::Root(directory));
    return {std::move(files), own, own};
  }

  /// Restores the file if the list of the kind has it. Returns whether it has.
  bool tryRestore(const backups::Kind& kind, const std::string& name, Rehearsal& rehearsal) {
    backups::RestoreScreen screen(*host_, std::string(kind.restoretype));
    const std::vector<std::string> rows = screen.rows();
    const auto row = std::ranges::find(rows, name);
    if (row == rows.end()) return false;
    const auto outcome = screen.pressOk(static_cast<std::size_t>(row - rows.begin()));
    if (!outcome.is_taken) {
      rehearsal.refusal = system_.isFile(rehearsal.archive)
                              ? "the restore list ignores it: it is too small"
                              : "the restore list ignores it: it is no file there";
    } else {
      rehearsal.commands = kind.is_confirmed
                               ? backups::configurationRestore(*host_, rehearsal.archive)
                               : outcome.commands;
      if (!kind.is_list) rehearsal.plan = planOf(kind, rehearsal.archive);
    }
    return true;
  }

  /// Adds an archive that a command unpacks by its path.
  static void unpack(Plan& plan, const std::string& archive) {
    (backups::isShellWord(archive) ? plan.archives : plan.torn).push_back(archive);
  }

  Plan planOf(const backups::Kind& kind, const std::string& archive) {
    Plan plan;
    plan.deleted_first.assign(kind.deleted_first.begin(), kind.deleted_first.end());
    unpack(plan, archive);
    for (const char* ending : kind.companions) {
      if (system_.exists(archive + ending)) unpack(plan, archive + ending);
    }
    if (kind.is_confirmed) {
      plan.removed_again = {stowline::kRemovedAfterRestore};
      plan.kept = backups::keptFiles(*host_, archive);
    }
    return plan;
  }

  /// Says why no list has the file: whether that of another model has it.
  std::string whyUnlisted(const std::string& name) const {
    const auto has_list = [&](const backups::Kind& kind) { return backups::isOfKind(name, kind); };
    if (std::ranges::none_of(backups::kKinds, has_list) || stowline::isForBox(name, model_)) {
      return "the restore list does not show it: its name is not that of a backup";
    }
    const std::string model(*std::ranges::find_if(
        stowline::kBoxTypes, [&](std::string_view box) { return stowline::isForBox(name, box); }));
    return "the restore list does not show it: it is of another model (" + model +
           "), and this is a " + model_;
  }

  base::Root root_;
  fs::path dir_;
  dryrun::System system_;
  std::string model_;
  base::Descriptor settings_;
  std::string medium_;  ///< in the place of the one that is set, "" for that
  std::unique_ptr<dryrun::Host> host_;
};

}  // namespace

Rehearsal rehearse(const fs::path& file, const fs::path& receiver) {
  return Stage(receiver).rehearse(file);
}

}  // namespace preview
