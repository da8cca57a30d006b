#include "command/preview/Rehearsal.h"

#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "command/backups/Catalogue.h"
#include "command/backups/RestoreScreen.h"
#include "host/include/Error.h"
#include "host/look/Host.h"
#include "host/native/Model.h"
#include "plugin/src/BoxTypes.h"
#include "plugin/src/Setup.h"

namespace preview {
namespace {

namespace fs = std::filesystem;

/// Whether the receiver's `path` is the directory `directory` of this machine.
bool isSame(const native::Root& receiver, const std::string& path, const native::Root& directory) {
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
        system_(native::Root(receiver)),
        model_(modelOf(receiver)),
        settings_(openSettings()),
        host_(hostOf(model_)) {}

  Rehearsal rehearse(const fs::path& file) {
    const std::string name = file.filename().string();
    Rehearsal rehearsal{.model = model_,
                        .medium = insert(fs::canonical(fs::absolute(file).parent_path())),
                        .archive = "",
                        .refusal = "",
                        .commands = {}};
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
      std::string model = native::readModel(system_);
      if (!model.empty()) return model;
    } catch (const host::Error& error) {
      throw std::runtime_error(receiver.string() + " is no receiver: " + error.message());
    }
    throw std::runtime_error(receiver.string() + " is no receiver: its model has no name");
  }

  native::Descriptor openSettings() const {
    return root_.status(native::kSettingsFile) ? root_.open(native::kSettingsFile)
                                               : native::Descriptor();
  }

  /// Returns a host of a model with the receiver's settings, read by the open file: its path may
  /// lead out of the receiver.
  std::unique_ptr<look::Host> hostOf(const std::string& model) {
    auto host = std::make_unique<look::Host>(
        system_, model, settings_ ? "/proc/self/fd/" + std::to_string(settings_.number()) : "");
    stowline::load(*host);
    if (!medium_.empty()) stowline::backupRestorePathSetting(*host).setValue(medium_);
    return host;
  }

  std::string backupDirectory() {
    const auto directory = stowline::getBackupRestorePath(*host_);
    if (!directory) throw std::runtime_error("the receiver's medium cannot be read");
    return *directory;
  }

  /// Makes `directory` the receiver's backup directory: as that which it is, or in the place of it.
  Medium insert(const fs::path& directory) {
    native::Root files(directory);
    const std::string own = backupDirectory();
    if (isSame(root_, own, files)) return {native::Root(dir_), "", own};
    const fs::path inside = directory.lexically_relative(dir_);
    if (!inside.empty() && *inside.begin() != "..") {
      const std::string path = (fs::path("/") / inside).string();
      medium_ = fs::path(path).parent_path().string();
      host_ = hostOf(model_);
      if (backupDirectory() == path) return {native::Root(dir_), "", path};
      medium_.clear();
      host_ = hostOf(model_);
    }
    system_.mount(own, native::Root(directory));
    return {std::move(files), own, own};
  }

  /// Restores the file if the list of the kind has it. Returns whether it has.
  bool tryRestore(const backups::Kind& kind, const std::string& name, Rehearsal& rehearsal) {
    backups::RestoreScreen screen(*host_, kind.restoretype);
    for (std::size_t row = 0; row < screen.rows().size(); ++row) {
      if (screen.rows()[row] != name) continue;
      const auto outcome = screen.pressOk(row);
      if (!outcome.is_taken) {
        rehearsal.refusal = system_.isFile(rehearsal.archive)
                                ? "the restore list ignores it: it is too small"
                                : "the restore list ignores it: it is no file there";
      } else if (kind.name == std::string_view("configuration")) {
        rehearsal.commands = backups::configurationRestore(*host_, rehearsal.archive);
      } else {
        rehearsal.commands = outcome.commands;
      }
      return true;
    }
    return false;
  }

  /// Says why no list has the file: whether that of another model has it.
  std::string whyUnlisted(const std::string& name) {
    for (const char* other : stowline::kBoxTypes) {
      const auto host = hostOf(other);
      for (const backups::Kind& kind : backups::kKinds) {
        const backups::RestoreScreen screen(*host, kind.restoretype);
        for (const std::string& row : screen.rows()) {
          if (row == name) {
            return "the restore list does not show it: it is of another model (" +
                   std::string(other) + "), and this is a " + model_;
          }
        }
      }
    }
    return "the restore list does not show it: its name is not that of a backup";
  }

  native::Root root_;
  fs::path dir_;
  look::System system_;
  std::string model_;
  native::Descriptor settings_;
  std::string medium_;  ///< in the place of the one that is set, "" for that
  std::unique_ptr<look::Host> host_;
};

}  // namespace

Rehearsal rehearse(const fs::path& file, const fs::path& receiver) {
  return Stage(receiver).rehearse(file);
}

}  // namespace preview
