#pragma once

#include <string>

#include "desk/terminal/Picture.h"

namespace desk::terminal {

/// Which lines of a long text are shown: those that it is at, until a viewer moves away.
class Scroll {
 public:
  /// Returns the first line to show of `count` where `page` fit, with the line `current` among
  /// them unless the viewer has moved.
  int top(int count, int page, int current);

  /// Moves as an action asks, of those that move a list's cursor. Returns whether it is one.
  bool move(const std::string& action);

 private:
  void moveTo(int top);

  bool follows_ = true;
  int top_ = 0;
  int current_ = 0;
  int count_ = 0;
  int page_ = 1;
};

}  // namespace desk::terminal
