#pragma once

#include <string>
#include <vector>

#include "tests/support/Commands.h"

namespace stowline::expected {

inline const std::string kDirectory = "/media/hdd/qor-stowline";
inline const std::string kStamp = "20240305_07-04_solo2";

/// Returns `text` without its first newline, so that a block can start on a line of its own.
std::string block(const std::string& text);

/// One line each, by the operation's name.
std::string translate(const std::string& text);
std::string print(const std::string& text);
std::string system(const std::string& command);
std::string fileExists(const std::string& path);
std::string exists(const std::string& path);
std::string listdir(const std::string& path);

/// The creation of a screen's component and its registration as a widget.
std::string widget(const std::string& key, const std::string& construction);
std::string staticText(const std::string& key, const std::string& text);

/// A text source with a translated text, in a receiver without a translation.
std::string label(const std::string& key, const std::string& text);

/// The load of the module.
std::string loaded();

/// The backup directory, as it is asked for when it is there and when it is not.
std::string backupDirectory(const std::string& path = kDirectory);
std::string newBackupDirectory(const std::string& path = kDirectory);

/// An information or error box of ten seconds; `type` as in "TYPE_INFO".
std::string box(const std::string& text, const std::string& type);
std::string setDialogTitle();

/// The command of the plugin list's backup.
std::string pluginListCommand(const std::string& file);

/// The search for user files in a receiver without the two skins.
std::string noUserFiles();

/// The query for the installed packages, as a command and as it is read.
using support::kInstalledPlugins;
std::string outputRead(const std::string& command);

/// The package screen with an installation of each of the packages; `opening`: what opens it, with
/// its bracket and what stands before the screen's name.
std::string packageScreen(const std::string& opening, const std::vector<std::string>& packages);

/// The opening of the screens and what follows when the layout is complete. `type`: "backup" or
/// "restore"; `medium`: the setting.
std::string menuOpened(const std::string& type);
std::string menuCreated(const std::string& type, const std::string& medium);

/// The opening of a restore list, up to its listing and after it.
std::string restoreListBegun(const std::string& plugin_path);
std::string restoreListEnded();
std::string confirmationOpened();

/// The restore list's listing of a directory with no script in it.
std::string listed(const std::vector<std::string>& directory_listing_shown);

/// The restore of the settings archive `archive`: the commands, then the reload.
std::string settingsRestored(const std::string& archive);
std::string channelsReloaded();

/// The commands of a configuration restore, and what is asked and printed while they are composed.
struct ConfigurationRestore {
  std::string archive;
  bool keeps_accounts = false;
  bool tests_samba = false;
  bool has_samba = false;
  bool has_atile = false;
  bool has_user_files = false;
  bool has_video_window = false;
};
std::string configurationRestored(const ConfigurationRestore& restore);

}  // namespace stowline::expected
