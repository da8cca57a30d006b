#pragma once

#include <chrono>
#include <string>

namespace base {

/// How long a medium may take to answer: a disk that sleeps takes some seconds to wake up.
inline constexpr std::chrono::milliseconds kPatience{15000};

/// Raises SystemError ("Connection timed out") unless the file system of the directory `path` says
/// something about itself and the directory within `limit`, be it an error: whoever reads a share
/// whose server is gone may wait for ever. That is asked by a process of its own, which may stay
/// behind, waiting, with nothing open.
void requireAnswer(const std::string& path, std::chrono::milliseconds limit = kPatience);

}  // namespace base
