#pragma once

#include <string>

namespace base {

/// Returns `bytes` as text that can be shown: UTF-8 as it stands, and every byte that is not part
/// of valid UTF-8 as "\xNN".
std::string escapeInvalidUtf8(const std::string& bytes);

/// Whether the byte is not the first of a character in UTF-8.
bool isContinuation(char byte);

/// Returns how many of the bytes come before a character in UTF-8 that may end beyond them.
std::size_t lengthOfWhole(const std::string& bytes);

/// Returns `bytes` as text on one line of a terminal: as escapeInvalidUtf8(), and with what is not
/// seen or changes how the rest is seen as "\xNN", byte by byte: controls, ends of lines, what
/// turns the order round, what has no width.
std::string escapeControls(const std::string& bytes);

/// Returns `bytes` as text that XML 1.0 can hold (section 2.2 of its recommendation): as
/// escapeInvalidUtf8(), and with the characters that it does not allow as "\xNN", byte by byte.
std::string escapeForXml(const std::string& bytes);

}  // namespace base
