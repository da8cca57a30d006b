#pragma once

#include <string>

namespace desk::terminal {

/// The key Escape, with which other keys begin.
inline constexpr int kEscape = 27;

/// Returns what a key of the terminal asks for: a word of the desk or one of the terminal's own
/// actions; "" for nothing. `key` is a character or a key code of curses(3).
std::string actionOfKey(int key);

}  // namespace desk::terminal
