#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace command_test {

/// The shell commands that the module runs, as the trace shows them.

std::string settingsBackupCommand(const std::string& archive);
std::string configurationBackupCommand(const std::string& archive);
inline const std::string kInstalledPlugins =
    R"(opkg list-installed | grep enigma2-plugin | cut -d " " -f 1)";

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

/// The members, sorted, that the archives must have for what lies in `tree`.
std::vector<std::string> settingsMembers(const std::filesystem::path& tree);
std::vector<std::string> configurationMembers(const std::filesystem::path& tree);

}  // namespace command_test
