#pragma once

#include <filesystem>

namespace command {

/// Moves this process for good to where a receiver's GUI would be: into the tree `tree`, or with
/// none onto the receiver that it runs on. Raises std::runtime_error where there is no receiver.
void moveOntoReceiver(const std::filesystem::path& tree);

}  // namespace command
