#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>

namespace command {

/// Adds the option --receiver, which sets `tree`, to a command; none in a build without the
/// stand-in receiver.
void addReceiverOption(CLI::App& command, std::filesystem::path& tree);

/// Moves this process for good to where a receiver's GUI would be: into the tree `tree`, or with
/// none onto the receiver that it runs on. Raises std::runtime_error where there is no receiver.
void moveOntoReceiver(const std::filesystem::path& tree);

}  // namespace command
