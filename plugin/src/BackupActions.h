#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Host.h"
#include "host/include/Overrides.h"
#include "plugin/src/BackupJobs.h"

namespace stowline {

/// The backup engine: names and writes the backup files and prunes old scheduled ones. One object
/// is one backup run: its stamp names every file that it writes. No operation catches what its host
/// operations raise.
class BackupActions : public BackupJobs {
 public:
  /// `backuptype`: "auto" marks the names as scheduled; anything else, or nothing, does not.
  explicit BackupActions(host::Host& host, std::optional<std::string_view> backuptype = {});

  std::string executiontime;        ///< date and time, "_", model, and ".auto" for scheduled runs
  std::string boxtype;              ///< the receiver's model
  std::optional<std::string> path;  ///< the backup directory, as the last job found it
  std::string settingfile;          ///< full path of the channel settings archive
  std::string configfile;           ///< full path of the configuration archive
  std::string pluginfile;           ///< full path of the plugin list

  /// Archives the channel lists. Returns whether the archive exists afterwards.
  host::Value createSettingFile() override;

  /// Archives the configuration, and the skins' user files beside it. Returns whether the
  /// configuration archive exists afterwards.
  host::Value createConfigFile() override;

  /// Writes the names of the installed plugin packages, one a line. Returns whether the list exists
  /// afterwards.
  host::Value createPluginList() override;

  /// Return the full paths of the user's own files of the two skins.
  std::vector<std::string> saveAtileUserFiles();
  std::vector<std::string> saveVFDSkinUserFiles();

  /// Returns the full paths in `search_dirs` that begin with one of `start_strings` and that the
  /// package's file list `package_info` does not name, by search directory, then in listing order.
  std::vector<std::string> saveUserFiles(const std::string& package_info,
                                         const std::vector<std::string>& start_strings,
                                         const std::vector<std::string>& search_dirs);

  /// Returns the entries of the directory `d` as full paths, in listing order.
  std::vector<std::string> listdir_fullpath(const std::string& d);

  /// Deletes the scheduled backups of this receiver's model but for the three newest of each kind,
  /// each with its companion archives, and logs each file deleted.
  void houseKeeping();

  /// From now on operations that call others of this object ask `overrides`, which outlives it,
  /// first.
  void setOverrides(host::Overrides& overrides) { overrides_ = &overrides; }

 private:
  template <class Own>
  std::vector<std::string> listed(std::string_view operation, const host::Value::List& arguments,
                                  Own own);
  std::vector<std::string> userFiles(const struct SkinFiles& skin);

  host::Host& host_;
  host::Overrides* overrides_ = nullptr;
};

}  // namespace stowline
