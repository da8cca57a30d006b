#include "tests/support/Commands.h"

namespace support {

std::string settingsBackupCommand(const std::string& archive) {
  std::string command = "tar czf " + archive;
  for (const char* file : kChannelFiles) command += std::string(" ") + file;
  return command;
}

std::string configurationBackupCommand(const std::string& archive) {
  std::string command = "tar czf " + archive;
  for (const char* place : kConfigurationPlaces) command += std::string(" ") + place;
  for (const char* exclude : kConfigurationExclusions)
    command += std::string(" --exclude ") + exclude;
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

}  // namespace support
