#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/include/Host.h"
#include "host/include/Screen.h"
#include "plugin/src/TitledScreen.h"

namespace stowline {

/// The list of the backups, plugin lists or scripts of one kind, to restore, install, run or
/// delete.
class StowlineRestore : public TitledScreen {
 public:
  /// `restoretype`: "settingrestore", "configrestore", "plugininstall" or "personalscript".
  StowlineRestore(host::Host& host, host::ScreenPeer& peer, host::Session& session,
                  std::string restoretype, std::string plugin_path);

  std::string skin_path;
  std::string restoretype;
  host::Value sel = host::Value::List{};  ///< the selected file's name, once there was one
  host::Value val = host::Value::List{};  ///< its full path
  bool entry = false;                     ///< whether a list was ever not empty
  bool exe = false;                       ///< whether a confirmed action is under way
  std::optional<std::string> path = "";   ///< the backup directory
  std::vector<std::string> flist;         ///< the listed names, in display order
  std::vector<host::PackageCommand> cmdList;
  std::vector<std::string> cmdlist;  ///< the command of the last script run
  std::shared_ptr<host::ComConsole> Console;
  std::shared_ptr<host::IpkgComponent> ipkg;

  std::vector<std::string> plugins;                ///< the lines of the plugin list
  std::vector<std::string> pluginsinstalled;       ///< the installed packages, a line each
  std::vector<std::string> pluginsinstalledclean;  ///< the same without their newlines
  std::vector<std::string> excludedplugins;        ///< packages never installed from a list

  /// Lists the files of the backup directory that belong to this receiver and restore type.
  void fill_list();

  /// Acts on the selected file as the restore type says.
  void KeyOk();

  /// Replaces the channel lists by those of the selected archive and reloads them. Returns false
  /// when the reload failed.
  bool restoreSettings();

  /// When `ret` equals true: unpacks the selected archive in a console and ends the GUI.
  void startRestore(const host::Value& ret = false);

  /// When `ret` equals true: runs the selected script in a console.
  void runScript(const host::Value& ret = false);

  /// Asks whether to delete the selected file.
  void deleteFile();

  /// When `ret` equals true: deletes the selected file and lists afresh.
  void startDelete(const host::Value& ret = false);

  /// Closes the screen; `ret` is ignored.
  void keyCancel(const host::Value& ret = false);

  /// Goes on with the installation from a plugin list when the feed update is done.
  void ipkgCallback(host::IpkgEvent event, const host::Value& param);

  /// Hands every package of the selected list that is neither installed nor excluded to the package
  /// screen.
  void installPlugins();

 private:
  bool select();
  bool hasSelection() const;
  void restoreSettingsAndReport();
  void reloadChannels();
  void openHelpScreen();
  void askToRunScript();
  host::Answer closeCallback();
};

}  // namespace stowline
