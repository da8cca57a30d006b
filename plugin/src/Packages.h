#pragma once

#include <string>
#include <vector>

namespace stowline {

/// Prints the names of the installed plugin packages, one a line. The filter is a substring test on
/// opkg's whole line, version included.
inline constexpr const char* kInstalledPlugins =
    "opkg list-installed | grep enigma2-plugin | cut -d \" \" -f 1";

/// Returns the lines without their trailing newline characters; other white space stays.
std::vector<std::string> withoutNewlines(std::vector<std::string> lines);

}  // namespace stowline
