#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "desk/gui/Channel.h"
#include "desk/model/Receiver.h"

namespace desk {

/// Where a GUI process finds the first of the descriptors that it is started with.
inline constexpr int kFirstDescriptor = 3;

/// Turns a process that has just been forked into one that runs runGuiProcess(), by the command
/// `arguments` of this program, with `channel` and `descriptors`. Those stay open until all that
/// runs in the tree has ended, but not in there. Never returns.
[[noreturn]] void startGuiProcess(const std::vector<std::string>& arguments, Channel channel,
                                  const std::vector<int>& descriptors);

/// The life of a GUI process: moves into the receiver tree `dir` (enterEnclosure), runs
/// `application` there and answers the supervisor at the other end of its channel until that has
/// gone. Never returns: the process ends.
[[noreturn]] void runGuiProcess(const std::filesystem::path& dir, bool is_enclosed,
                                const Application& application);

}  // namespace desk
