#include "Expected.h"

#include <fnmatch.h>
#include <glob.h>

#include <algorithm>

namespace command_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kChannelFiles[] = {
    "/etc/enigma2/*.tv",           "/etc/enigma2/*.radio",   "/etc/enigma2/whitelist",
    "/etc/enigma2/blacklist",      "/etc/enigma2/lamedb",    "/etc/tuxbox/satellites.xml",
    "/etc/tuxbox/terrestrial.xml", "/etc/tuxbox/cables.xml",
};

constexpr const char* kPlaces[] = {
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

constexpr const char* kExcludes[] = {
    "etc/enigma2/*.tv",      "etc/enigma2/*.radio", "etc/enigma2/whitelist",
    "etc/enigma2/blacklist", "etc/enigma2/lamedb",  "etc/tuxbox/config/enigma*",
    "etc/enigma2/*.pem",     "etc/enigma2/profile",
};

/// The paths below `tree` that a pattern of the receiver's shell means.
std::vector<fs::path> matches(const fs::path& tree, const std::string& pattern) {
  glob_t found{};
  std::vector<fs::path> paths;
  if (glob((tree.string() + pattern).c_str(), 0, nullptr, &found) == 0) {
    paths.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  }
  globfree(&found);
  return paths;
}

bool isExcluded(const std::string& member) {
  return std::ranges::any_of(
      kExcludes, [&](const char* pattern) { return fnmatch(pattern, member.c_str(), 0) == 0; });
}

/// The names under which tar stores `path` and what lies below it.
std::vector<std::string> storedNames(const fs::path& tree, const fs::path& path) {
  const std::string name = path.lexically_relative(tree).string();
  if (fs::is_symlink(path) || !fs::is_directory(path)) return {name};
  std::vector<std::string> names = {name + "/"};
  for (const auto& entry : fs::directory_iterator(path)) {
    std::ranges::copy(storedNames(tree, entry.path()), std::back_inserter(names));
  }
  return names;
}

template <class Patterns>
std::vector<std::string> members(const fs::path& tree, const Patterns& patterns) {
  std::vector<std::string> names;
  for (const char* pattern : patterns) {
    for (const fs::path& path : matches(tree, pattern)) {
      std::ranges::copy(storedNames(tree, path), std::back_inserter(names));
    }
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace

std::string settingsBackupCommand(const std::string& archive) {
  std::string command = "tar czf " + archive;
  for (const char* file : kChannelFiles) command += std::string(" ") + file;
  return command;
}

std::string configurationBackupCommand(const std::string& archive) {
  std::string command = "tar czf " + archive;
  for (const char* place : kPlaces) command += std::string(" ") + place;
  for (const char* exclude : kExcludes) command += std::string(" --exclude ") + exclude;
  return command;
}

std::vector<std::string> settingsRestoreCommands(const std::string& archive) {
  std::vector<std::string> commands;
  for (const char* file : kChannelFiles) commands.push_back(std::string("rm -f ") + file);
  commands.push_back("tar xzf " + archive + " -C /");
  return commands;
}

std::vector<std::string> configurationRestoreCommands(const ConfigurationRestore& restore) {
  const std::string& archive = restore.archive;
  const bool system = restore.keeps_system_files;
  const bool samba = restore.keeps_samba;
  const bool video = restore.has_video_window;
  const struct {
    bool runs;
    std::string command;
  } steps[] = {
      {system, "cat /etc/fstab > /etc/fstab_backup"},
      {system, "cat /etc/passwd > /etc/passwd_backup"},
      {system, "cat /etc/shadow > /etc/shadow_backup"},
      {samba, "cat /etc/samba/smb.conf > /etc/samba/smb_backup"},
      {true, "mkdir -p /usr/share/enigma2/skin_default/spinner/tmp"},
      {true,
       "mv /usr/share/enigma2/skin_default/spinner/*.png "
       "/usr/share/enigma2/skin_default/spinner/tmp"},
      {true, "/etc/init.d/current_cam.sh stop ; tar -xzf " + archive + " -C /"},
      {restore.has_atile_hd, "tar -xzf " + archive + "_atile_hd -C /"},
      {restore.has_user_files, "tar -xzf " + archive + "_user_files -C /"},
      {true, R"(echo "[Qor Stowline] syncing ..." ;  /bin/sync ; sleep 1)"},
      {true,
       "if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  mv "
       "/usr/share/enigma2/skin_default/spinner/tmp/*.png "
       "/usr/share/enigma2/skin_default/spinner ; fi ; rm -rf "
       "/usr/share/enigma2/skin_default/spinner/tmp"},
      {true, "rm -rf /.qws"},
      {true, R"(if [ ! -L "/etc/resolv.conf" ] ; then rm /var/run/resolv.conf ; )"
             "mv /etc/resolv.conf /var/run/resolv.conf ; "
             "ln -s /var/run/resolv.conf /etc/resolv.conf ; fi"},
      {samba, "cat /etc/samba/smb_backup > /etc/samba/smb.conf ; rm /etc/samba/smb_backup"},
      {system, "cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup"},
      {system, "cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup"},
      {system, "cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup"},
      {system, "chmod -x /etc/auto.network"},
      {video, "echo 00000000 > /proc/stb/vmpeg/0/dst_height"},
      {video, "echo 00000000 > /proc/stb/vmpeg/0/dst_left"},
      {video, "echo 00000000 > /proc/stb/vmpeg/0/dst_top"},
      {video, "echo 00000000 > /proc/stb/vmpeg/0/dst_width"},
      {true,
       "/etc/init.d/networking stop ; /etc/init.d/networking start ; "
       "/etc/init.d/current_cam.sh start ; killall -9 enigma2"},
  };
  std::vector<std::string> commands;
  for (const auto& [runs, command] : steps) {
    if (runs) commands.push_back(command);
  }
  return commands;
}

std::vector<std::string> settingsMembers(const fs::path& tree) {
  return members(tree, kChannelFiles);
}

std::vector<std::string> configurationMembers(const fs::path& tree) {
  std::vector<std::string> names = members(tree, kPlaces);
  std::erase_if(names, isExcluded);
  return names;
}

}  // namespace command_test
