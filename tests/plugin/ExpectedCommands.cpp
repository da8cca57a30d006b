#include "Expected.h"

namespace stowline::expected {
namespace {

constexpr const char* kChannelFiles[] = {
    "/etc/enigma2/*.tv",           "/etc/enigma2/*.radio",   "/etc/enigma2/whitelist",
    "/etc/enigma2/blacklist",      "/etc/enigma2/lamedb",    "/etc/tuxbox/satellites.xml",
    "/etc/tuxbox/terrestrial.xml", "/etc/tuxbox/cables.xml",
};

constexpr const char* kConfigurationPlaces[] = {
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

constexpr const char* kConfigurationExclusions[] = {
    "etc/enigma2/*.tv",      "etc/enigma2/*.radio", "etc/enigma2/whitelist",
    "etc/enigma2/blacklist", "etc/enigma2/lamedb",  "etc/tuxbox/config/enigma*",
    "etc/enigma2/*.pem",     "etc/enigma2/profile",
};

constexpr const char* kKeepAccounts[] = {
    "cat /etc/fstab > /etc/fstab_backup",
    "cat /etc/passwd > /etc/passwd_backup",
    "cat /etc/shadow > /etc/shadow_backup",
};

constexpr const char* kSavePictures[] = {
    "mkdir -p /usr/share/enigma2/skin_default/spinner/tmp",
    "mv /usr/share/enigma2/skin_default/spinner/*.png /usr/share/enigma2/skin_default/spinner/tmp",
};

constexpr const char* kAfterUnpacking[] = {
    R"(echo "[Qor Stowline] syncing ..." ;  /bin/sync ; sleep 1)",
    ("if [ ! -f /usr/share/enigma2/skin_default/spinner/wait1.png ] ; then  mv "
     "/usr/share/enigma2/skin_default/spinner/tmp/*.png /usr/share/enigma2/skin_default/spinner ; "
     "fi ; rm -rf /usr/share/enigma2/skin_default/spinner/tmp"),
    "rm -rf /.qws",
    (R"(if [ ! -L "/etc/resolv.conf" ] ; then rm /var/run/resolv.conf ; mv /etc/resolv.conf )"
     "/var/run/resolv.conf ; ln -s /var/run/resolv.conf /etc/resolv.conf ; fi"),
};

/// The third removes the copy of passwd once more and leaves the copy of shadow.
constexpr const char* kRestoreAccounts[] = {
    "cat /etc/fstab_backup > /etc/fstab ; rm /etc/fstab_backup",
    "cat /etc/passwd_backup > /etc/passwd ; rm /etc/passwd_backup",
    "cat /etc/shadow_backup > /etc/shadow ; rm /etc/passwd_backup",
    "chmod -x /etc/auto.network",
};

constexpr const char* kResetVideoWindow[] = {
    "echo 00000000 > /proc/stb/vmpeg/0/dst_height",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_left",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_top",
    "echo 00000000 > /proc/stb/vmpeg/0/dst_width",
};

template <class Commands>
std::string systemAll(const Commands& commands) {
  std::string lines;
  for (const char* command : commands) lines += system(command);
  return lines;
}

template <class Texts>
std::string each(const char* before, const Texts& texts) {
  std::string result;
  for (const char* text : texts) result.append(before).append(text);
  return result;
}

/// What is asked and printed, in order, while the commands are composed.
std::string questions(const ConfigurationRestore& restore) {
  std::string lines;
  if (restore.keeps_accounts) {
    lines += print("[Qor Stowline] do not restore old OE tree configuration files");
  }
  if (restore.tests_samba) lines += exists("/etc/samba/smb.conf");
  if (restore.has_samba) lines += print("[Qor Stowline] do not restore old samba configuration");
  lines += fileExists(restore.archive + "_atile_hd");
  lines += fileExists(restore.archive + "_user_files");
  if (restore.tests_samba) lines += exists("/etc/samba/smb.conf");
  if (restore.has_samba) lines += print("[Qor Stowline] restore installed smb.conf");
  return lines + fileExists("/proc/stb/vmpeg/0/dst_width");
}

std::string commands(const ConfigurationRestore& restore) {
  const std::string unpack = "tar -xzf " + restore.archive;
  std::string lines;
  if (restore.keeps_accounts) lines += systemAll(kKeepAccounts);
  if (restore.has_samba) lines += system("cat /etc/samba/smb.conf > /etc/samba/smb_backup");
  lines += systemAll(kSavePictures);
  lines += system("/etc/init.d/current_cam.sh stop ; " + unpack + " -C /");
  if (restore.has_atile) lines += system(unpack + "_atile_hd -C /");
  if (restore.has_user_files) lines += system(unpack + "_user_files -C /");
  lines += systemAll(kAfterUnpacking);
  if (restore.has_samba) {
    lines += system("cat /etc/samba/smb_backup > /etc/samba/smb.conf ; rm /etc/samba/smb_backup");
  }
  if (restore.keeps_accounts) lines += systemAll(kRestoreAccounts);
  if (restore.has_video_window) lines += systemAll(kResetVideoWindow);
  return lines + system(
                     "/etc/init.d/networking stop ; /etc/init.d/networking start ; "
                     "/etc/init.d/current_cam.sh start ; killall -9 enigma2");
}

}  // namespace

std::string settingsCommand(const std::string& archive) {
  return "tar czf " + archive + each(" ", kChannelFiles);
}

std::string configurationCommand(const std::string& archive) {
  return "tar czf " + archive + each(" ", kConfigurationPlaces) +
         each(" --exclude ", kConfigurationExclusions);
}

std::string pluginListCommand(const std::string& file) {
  return "opkg list-installed | grep enigma2-plugin | cut -d \" \" -f 1 >> " + file;
}

std::string noUserFiles() {
  return block(R"(
fileExists("/var/lib/opkg/info/enigma2-plugin-skin-atile.list")
os_path.exists("/usr/share/enigma2/AtileHD")
os_path.exists("/usr/share/enigma2/AtileHD/allScreens")
os_path.exists("/usr/share/enigma2/AtileHD/preview")
fileExists("/var/lib/opkg/info/enigma2-plugin-systemplugins-vfdskinselector.list")
os_path.exists("/usr/share/enigma2/vfd_skin")
)");
}

std::string settingsRestored(const std::string& archive) {
  std::string lines;
  for (const char* file : kChannelFiles) lines += system("rm -f " + std::string(file));
  return lines + system("tar xzf " + archive + " -C /");
}

std::string channelsReloaded() {
  return block(R"(
nimmanager.readTransponders()
eDVBDB.getInstance().reloadServicelist()
eDVBDB.getInstance().reloadBouquets()
InfoBar.instance.servicelist
servicelist.getRoot()
servicelist.getCurrentSelection()
servicelist.setRoot(<root>)
servicelist.setCurrentSelection(<service>)
)");
}

std::string configurationRestored(const ConfigurationRestore& restore) {
  return questions(restore) + commands(restore);
}

}  // namespace stowline::expected
