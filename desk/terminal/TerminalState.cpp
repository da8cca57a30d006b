#include "desk/terminal/TerminalState.h"

#include <curses.h>
#include <term.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace desk::terminal {
namespace {

/// Reads the description of standard output's terminal (terminfo(5)). Returns whether there is one
/// of a terminal that can place its cursor. It stays until del_curterm(cur_term).
bool readDescription() {
  int error = 0;
  if (setupterm(nullptr, STDOUT_FILENO, &error) != OK) return false;
  return cursor_address != nullptr;
}

void forgetDescription() {
  if (cur_term) del_curterm(cur_term);
}

}  // namespace

void requireTerminal() {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) {
    throw std::runtime_error(
        "standard input and output are not both a terminal; press keys with --play \"WORDS\" "
        "without one");
  }
  const bool is_usable = readDescription();
  forgetDescription();
  if (is_usable) return;
  const char* type = std::getenv("TERM");
  throw std::runtime_error(std::string("TERM is '") + (type ? type : "") +
                           "', a terminal that is not known or cannot place its cursor; set it to "
                           "the terminal's type, such as xterm");
}

TerminalState::TerminalState() {
  tcgetattr(STDIN_FILENO, &modes_);
}

void TerminalState::restore() const {
  // At once, for output may have been stopped (Ctrl-S). Only output that was stopped by tcflow(3)
  // goes on by it.
  tcsetattr(STDIN_FILENO, TCSANOW, &modes_);
  tcflow(STDIN_FILENO, TCOOFF);
  tcflow(STDIN_FILENO, TCOON);
  if (!readDescription()) return;
  // A terminal may keep what its own screen has shown, if that has grown.
  char* const clear_own_screen = exit_ca_mode ? clear_screen : nullptr;
  for (const char* const sequence : {exit_attribute_mode, orig_pair, cursor_normal, keypad_local,
                                     clear_own_screen, exit_ca_mode}) {
    if (sequence) tputs(sequence, 1, std::putchar);
  }
  if (!exit_ca_mode) {
    tputs(tparm(cursor_address, lines - 1, 0), 1, std::putchar);
    if (clr_eol) tputs(clr_eol, 1, std::putchar);
  }
  // DECRST 1000 and 1006 of xterm's, which terminfo(5) has no name for.
  if (key_mouse) std::fputs("\033[?1000l\033[?1006l", stdout);
  std::fflush(stdout);
  forgetDescription();
}

}  // namespace desk::terminal
