#pragma once

namespace stowline {

/// The files and shell patterns of the channel settings: what a settings backup archives and a
/// settings restore removes first, in this order.
inline constexpr const char* kChannelFiles[] = {
    "/etc/enigma2/*.tv",           "/etc/enigma2/*.radio",   "/etc/enigma2/whitelist",
    "/etc/enigma2/blacklist",      "/etc/enigma2/lamedb",    "/etc/tuxbox/satellites.xml",
    "/etc/tuxbox/terrestrial.xml", "/etc/tuxbox/cables.xml",
};

}  // namespace stowline
