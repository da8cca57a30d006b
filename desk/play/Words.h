#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace desk {

/// A script with a word that is none; what() is one line for the user.
class UnknownWord : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// Whether a viewer can press this on the television: a key of the remote control, or "row:INDEX".
bool isPress(const std::string& word);

/// Cuts a script at its white space into words; white space between single or double quotes stays,
/// and the quotes go. Raises UnknownWord for anything but a key of the remote control, "wait",
/// "timeout", "frame", "select:TEXT" and "row:INDEX".
std::vector<std::string> parseWords(const std::string& script);

}  // namespace desk
