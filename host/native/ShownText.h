#pragma once

#include <string>

namespace native {

/// Returns `bytes` as text that can be shown: UTF-8 as it stands, and every byte that is not part
/// of valid UTF-8 as "\xNN".
std::string shownText(const std::string& bytes);

/// Returns `bytes` as text on one line of a terminal: as shownText(), and with the control
/// characters, U+0000 to U+001F and U+007F to U+009F, as "\xNN", byte by byte.
std::string shownLine(const std::string& bytes);

/// Returns `bytes` as text that XML 1.0 can hold (section 2.2 of its recommendation): as
/// shownText(), and with the characters that it does not allow as "\xNN", byte by byte.
std::string shownXml(const std::string& bytes);

}  // namespace native
