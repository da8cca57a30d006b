#pragma once

#include <string>

#include "host/plain/Host.h"

namespace scheduled {

/// Raises std::runtime_error, in one line, unless what the receiver's settings name as the medium
/// is a medium that is mounted, a link to one, or a directory on one.
void requireMounted(const plain::Host& host);

/// Writes a file of some size into `directory`, and removes it. Returns why it cannot be written,
/// as strerror(3) has it, "" when it can.
std::string whyNotWritable(const std::string& directory);

/// Waits until the file or directory `path` is on its medium, where that can be waited for, and
/// lets go of what memory holds of it, so that it is read from there next. Raises
/// base::SystemError.
void sync(const std::string& path);

}  // namespace scheduled
