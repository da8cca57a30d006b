#pragma once

#include <string>
#include <vector>

/// The shell commands that the module runs, and the files that they name, as the tests expect them.
namespace support {

inline constexpr const char* kChannelFiles[] = {
    "/etc/enigma2/*.tv",           "/etc/enigma2/*.radio",   "/etc/enigma2/whitelist",
    "/etc/enigma2/blacklist",      "/etc/enigma2/lamedb",    "/etc/tuxbox/satellites.xml",
    "/etc/tuxbox/terrestrial.xml", "/etc/tuxbox/cables.xml",
};

inline constexpr const char* kConfigurationPlaces[] = {
    "/etc/enigma2/*",
    "/etc/CC*",
    "/usr/scam/*",
    "/etc/tuxbox/config/*",
    "/usr/keys/*",
    "/etc/ConfFS/*",
    "/usr/lib/enigma2/python/Plugins/Extensions/webradioFS/skin/mySkin/*",
    "/etc/MultiQuickButton/*",
    "/usr/lib/enigma2/python/Plugins/Extensions/Foreca/*.cfg",
    "/usr/lib/enigma2/python/Plugins/Extensions/SHOUTcast/favorites",
    "/etc/samba/*",
    "/etc/hostname",
    "/etc/passwd",
    "/etc/shadow",
    "/etc/exports",
    "/etc/fstab",
    "/etc/auto.network",
    "/etc/auto.network_qor",
    "/etc/network/interfaces",
    "/etc/resolv.conf",
    "/etc/wpa_supplicant*.conf",
    "/usr/share/enigma2/radio.mvi",
    "/usr/share/vuplus-bootlogo/*",
    "/.qws/share/data/Arora/*",
    "/Settings/*",
    "/usr/lib/enigma2/python/Plugins/SystemPlugins/PiPServiceRelation/psr_config",
    "/usr/lib/enigma2/python/Plugins/SystemPlugins/CrashReport/settings",
    "/usr/lib/enigma2/python/Plugins/Extensions/HbbTV/bookmark.ini",
    "/etc/init.d/current_cam.sh",
    "/usr/share/enigma2/skin_default/spinner/wait*png",
    "/etc/enigmalight.conf",
    "/usr/lib/enigma2/python/Plugins/Extensions/EnigmaLight/profiles/custom_*.profile",
};

inline constexpr const char* kConfigurationExclusions[] = {
    "etc/enigma2/*.tv",      "etc/enigma2/*.radio", "etc/enigma2/whitelist",
    "etc/enigma2/blacklist", "etc/enigma2/lamedb",  "etc/tuxbox/config/enigma*",
    "etc/enigma2/*.pem",     "etc/enigma2/profile",
};

inline const std::string kInstalledPlugins =
    R"(opkg list-installed | grep enigma2-plugin | cut -d " " -f 1)";

/// What a backup of the channel settings and of the configuration runs.
std::string settingsBackupCommand(const std::string& archive);
std::string configurationBackupCommand(const std::string& archive);

/// What a settings restore runs.
std::vector<std::string> settingsRestoreCommands(const std::string& archive);

/// What a configuration restore depends on.
struct ConfigurationRestore {
  std::string archive;  ///< with its directory
  bool keeps_system_files;
  bool keeps_samba;
  bool has_atile_hd;
  bool has_user_files;
  bool has_video_window;
};

/// What a configuration restore runs.
std::vector<std::string> configurationRestoreCommands(const ConfigurationRestore& restore);

}  // namespace support
