#pragma once

#include "host/plain/Host.h"

namespace desk {

/// Binds the channel database of the stand-in: it reads the channel files of the receiver and tells
/// its log what it has found. Reading raises base::SystemError when the satellite table
/// cannot be read.
void bindChannels(plain::Host& host);

}  // namespace desk
