#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/Commands.h"

namespace command_test {

using support::configurationBackupCommand;
using support::ConfigurationRestore;
using support::configurationRestoreCommands;
using support::kInstalledPlugins;
using support::settingsBackupCommand;
using support::settingsRestoreCommands;

/// The members, sorted, that the archives must have for what lies in `tree`.
std::vector<std::string> settingsMembers(const std::filesystem::path& tree);
std::vector<std::string> configurationMembers(const std::filesystem::path& tree);

}  // namespace command_test
