#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Host.h"
#include "host/include/Screen.h"
#include "plugin/src/BackupJobs.h"
#include "plugin/src/TitledScreen.h"

namespace stowline {

/// The main menu, in its backup and its restore flavour.
class Stowline : public TitledScreen {
 public:
  /// `plugin_path`: the directory of the plug-in, handed on to the restore lists. `screen_type`:
  /// "restore" for the restore menu; anything else is the backup menu. Raises what the host raises,
  /// but for a skin without a title.
  Stowline(host::Host& host, host::ScreenPeer& peer, host::Session& session,
           std::string plugin_path, const std::string& screen_type = "backup");

  std::string skin_path;
  std::string screentype;  ///< "backup" or "restore"
  bool reloadPluginlist =
      false;  ///< whether closing the menu makes the host read its plugins again
  std::shared_ptr<BackupJobs> backupactions;
  host::Value::List list;  ///< the rows: key, title, description, picture, nothing
  std::vector<host::PackageCommand> cmdList;
  std::shared_ptr<host::ComConsole> Console;
  std::shared_ptr<host::IpkgComponent> ipkg;

  std::string restoretype;  ///< the restore type of the last restore entry that was chosen
  std::optional<std::string> backuprestorepath;    ///< the backup directory, as last checked
  std::optional<std::string> path;                 ///< the directory of the local packages
  std::vector<std::string> ipklist;                ///< the local package files found
  std::vector<std::string> pluginsinstalled;       ///< the installed packages, a line each
  std::vector<std::string> pluginsinstalledclean;  ///< the same without their newlines

  /// Builds the rows of the menu afresh.
  void createMenu();

  /// Carries out the entry under the cursor; `ret` is ignored.
  void runMenuEntry(const host::Value& ret = {});

  /// Stores the medium of `option` (a choice, or nothing when the box was left), saves the
  /// configuration and checks the medium. Raises host::Error ("TypeError") for any other `option`.
  void backuprestorepath_choosen(const host::Value& option);

  /// Finds or makes the backup directory, says so when that fails, and builds the menu afresh.
  void checkFolders();

  /// Closes the menu with true.
  void keyCancel();

  /// Goes on with the installation of local packages when the feed update is done.
  void ipkgCallback(host::IpkgEvent event, const host::Value& param);

  /// Hands every package file in the backup directory's "plugins" to the package screen.
  void installLocalPlugins();

 private:
  host::Value row(const struct MenuEntry& entry) const;
  std::string shown(std::string_view text) const;
  host::Value runJob(host::Value (BackupJobs::*job)());
  void report(const host::Value& result, const std::string& success, const std::string& failure);
  void openRestoreList(const std::string& type);
  void chooseMedium();
  void queueLocalPackages(const std::vector<std::string>& packages);
  void sayNotWriteable();
};

}  // namespace stowline
