#pragma once

#include <termios.h>

namespace desk::terminal {

/// Raises std::runtime_error with one line for the user unless standard input and output are a
/// terminal that can place its cursor.
void requireTerminal();

/// What a terminal was before it was taken over. Needs a terminal that requireTerminal() accepts.
class TerminalState {
 public:
  /// Takes note of the state that standard input's terminal is in.
  TerminalState();

  /// Puts the terminal back: its modes, no screen of its own, a visible cursor, plain text and no
  /// reports of the mouse. The process has to ignore SIGTTOU.
  void restore() const;

 private:
  termios modes_{};
};

}  // namespace desk::terminal
