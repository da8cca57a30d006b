#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace desk {

/// What a front end asks of the GUI.
struct Word {
  enum class Kind {
    opening,  ///< none: what is shown before the first word
    key,      ///< a key of the remote control
    wait,     ///< until no command, package job or console is running
    timeout,  ///< the time-out of the shown box passes at once
    frame,    ///< the screen again
    select,   ///< the cursor to the first row that contains the argument
    row,      ///< the cursor to the row whose index is the argument
  };

  Kind kind = Kind::opening;
  std::string text = {};  ///< the word as it is written

  /// Returns what follows the colon of a word that has one.
  std::string argument() const { return text.substr(text.find(':') + 1); }

  friend bool operator==(const Word&, const Word&) = default;
};

/// Returns the word that is written so; nothing when there is no such word.
std::optional<Word> parseWord(const std::string& text);

/// Whether a viewer can press this on the television: a key of the remote control, or "row:INDEX".
bool isPress(const std::string& text);

/// A script with a word that is none; what() is one line for the user.
class UnknownWord : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// Cuts a script at its white space into words; white space between single or double quotes stays,
/// and the quotes go. Raises UnknownWord for anything but a key of the remote control, "wait",
/// "timeout", "frame", "select:TEXT" and "row:INDEX".
std::vector<Word> parseWords(const std::string& script);

}  // namespace desk
