#pragma once

#include <filesystem>

#include "desk/gui/Channel.h"
#include "desk/model/Receiver.h"

namespace desk {

/// The life of a GUI process: moves into the receiver tree `dir`, runs `application` there and
/// answers the supervisor at the other end of `channel` until that has gone. Never returns: the
/// process ends.
[[noreturn]] void runGuiProcess(const std::filesystem::path& dir, const Application& application,
                                Channel channel);

}  // namespace desk
