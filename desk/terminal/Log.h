#pragma once

#include <deque>
#include <string>

#include "desk/terminal/Canvas.h"

namespace desk::terminal {

/// The lines that the module prints, the commands that run and what happens to the GUI, as they
/// come.
class Log {
 public:
  /// Adds what is shown as one entry after `mark`.
  void add(const std::string& mark, const std::string& text, Ink ink);

  /// Draws the newest entries, as many as fit in the box.
  void draw(Canvas& canvas, const Area& area) const;

 private:
  struct Entry {
    std::string text;
    Ink ink;
  };

  std::deque<Entry> entries_;
};

}  // namespace desk::terminal
