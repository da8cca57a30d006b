#include "tests/plugin/flows/Expected.h"

namespace stowline::expected {
namespace {

std::string systemAll(const std::vector<std::string>& commands) {
  std::string lines;
  for (const std::string& command : commands) lines += system(command);
  return lines;
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
  return systemAll(
      support::configurationRestoreCommands({.archive = restore.archive,
                                             .keeps_system_files = restore.keeps_accounts,
                                             .keeps_samba = restore.has_samba,
                                             .has_atile_hd = restore.has_atile,
                                             .has_user_files = restore.has_user_files,
                                             .has_video_window = restore.has_video_window}));
}

}  // namespace

std::string pluginListCommand(const std::string& file) {
  return support::kInstalledPlugins + " >> " + file;
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
  return systemAll(support::settingsRestoreCommands(archive));
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
