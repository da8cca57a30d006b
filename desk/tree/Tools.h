#pragma once

#include <filesystem>

namespace desk {

/// Raises TreeError unless this machine has the programs that a receiver tree needs: a busybox
/// whose shell runs the commands that PATH names, and a toybox.
void requireMachineTools();

/// Copies them into the tree as its shell, small tools and tar, with the shared libraries that they
/// need, and the machine's time zone for its clock. Raises TreeError or
/// std::filesystem::filesystem_error.
void copyTools(const std::filesystem::path& tree);

/// Raises TreeError unless the tree has its tools.
void requireTools(const std::filesystem::path& tree);

}  // namespace desk
