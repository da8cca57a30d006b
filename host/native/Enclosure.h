#pragma once

#include <filesystem>

namespace native {

/// Moves this process into the receiver tree `dir`, so that "/" and every path below it mean the
/// tree: by chroot(2), for an ordinary user within a user namespace of its own
/// (user_namespaces(7)). Raises std::runtime_error with one line that says what to do when the
/// system does not allow it.
void enterTree(const std::filesystem::path& dir);

/// Lets this process and its commands see no environment but what a receiver's GUI has, and work in
/// its directory. Raises std::runtime_error when that is not there.
void setReceiverEnvironment();

}  // namespace native
