#pragma once

#include <string>

namespace desk::terminal {

/// Returns what a key of the terminal asks for: a word of the desk or one of the terminal's own
/// actions; "" for nothing. `key` is a character or a key code of curses(3).
std::string actionOfKey(int key);

}  // namespace desk::terminal
