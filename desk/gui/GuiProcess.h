#pragma once

#include <filesystem>

#include "desk/model/Receiver.h"

namespace desk {

/// The life of a GUI process: moves into the receiver tree `dir` (enterEnclosure), runs
/// `application` there and answers the supervisor at the other end of the channel, which is
/// standard input, until that has gone. Never returns: the process ends.
[[noreturn]] void runGuiProcess(const std::filesystem::path& dir, bool is_enclosed,
                                const Application& application);

}  // namespace desk
