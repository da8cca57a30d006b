#pragma once

#include <span>

namespace stowline {

/// The files and shell patterns of the channel settings: what a settings backup archives and a
/// settings restore removes first, in this order.
inline constexpr const char* kChannelFiles[] = {
    "/etc/enigma2/*.tv",           "/etc/enigma2/*.radio",   "/etc/enigma2/whitelist",
    "/etc/enigma2/blacklist",      "/etc/enigma2/lamedb",    "/etc/tuxbox/satellites.xml",
    "/etc/tuxbox/terrestrial.xml", "/etc/tuxbox/cables.xml",
};

/// The paths and shell patterns of the configuration archive, in archive order.
inline constexpr const char* kConfigPlaces[] = {
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

/// What the configuration archive leaves out: the channel data, keys and the GUI's profile. They
/// are member names, which tar stores without the leading "/".
inline constexpr const char* kConfigExcludes[] = {
    "etc/enigma2/*.tv",      "etc/enigma2/*.radio", "etc/enigma2/whitelist",
    "etc/enigma2/blacklist", "etc/enigma2/lamedb",  "etc/tuxbox/config/enigma*",
    "etc/enigma2/*.pem",     "etc/enigma2/profile",
};

/// How the names of the archives that a configuration archive may have beside it end. Backups write
/// the second alone.
inline constexpr const char* kUserFilesEnding = "_user_files";
inline constexpr const char* kCompanions[] = {"_atile_hd", kUserFilesEnding};

/// The files that the user of a skin has made: those in `search_dirs` that begin with one of
/// `start_strings` and that the package's file list `package_info` does not name.
struct SkinFiles {
  const char* package_info;
  std::span<const char* const> start_strings;
  std::span<const char* const> search_dirs;
};

inline constexpr const char* kAtileStarts[] = {
    "/usr/share/enigma2/AtileHD/colors_atile_",
    "/usr/share/enigma2/AtileHD/font_atile_",
    "/usr/share/enigma2/AtileHD/allScreens/skin_",
    "/usr/share/enigma2/AtileHD/preview/preview_",
};
inline constexpr const char* kAtileDirectories[] = {
    "/usr/share/enigma2/AtileHD",
    "/usr/share/enigma2/AtileHD/allScreens",
    "/usr/share/enigma2/AtileHD/preview",
};
inline constexpr SkinFiles kAtileFiles = {"/var/lib/opkg/info/enigma2-plugin-skin-atile.list",
                                          kAtileStarts, kAtileDirectories};

inline constexpr const char* kVfdSkinStarts[] = {"/usr/share/enigma2/vfd_skin/skin_vfd"};
inline constexpr const char* kVfdSkinDirectories[] = {"/usr/share/enigma2/vfd_skin"};
inline constexpr SkinFiles kVfdSkinFiles = {
    "/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list", kVfdSkinStarts,
    kVfdSkinDirectories};

}  // namespace stowline
