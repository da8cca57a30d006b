#pragma once

#include <string>
#include <vector>

#include "desk/protocol/Channel.h"

namespace desk {

/// Where a GUI process finds the first of the descriptors that it is started with.
inline constexpr int kFirstDescriptor = 3;

/// Executes this program anew in a process that has just been forked, as the GUI process, by the
/// command `arguments`. It finds the channel as its standard input, and `descriptors` from
/// kFirstDescriptor on; all others are closed. Never returns.
[[noreturn]] void executeGui(const std::vector<std::string>& arguments, Channel channel,
                             const std::vector<int>& descriptors);

}  // namespace desk
