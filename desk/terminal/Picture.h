#pragma once

#include <string>
#include <vector>

#include "desk/terminal/Canvas.h"

namespace desk::terminal {

/// What a key or a click asks for: a word of the desk, or one of these names of the terminal's own.
namespace action {
inline constexpr const char* kHelp = "help";
inline constexpr const char* kLog = "log";
inline constexpr const char* kPageUp = "page-up";
inline constexpr const char* kPageDown = "page-down";
inline constexpr const char* kFirst = "first";
inline constexpr const char* kLast = "last";
inline constexpr const char* kRedraw = "redraw";
}  // namespace action

/// A place that can be clicked.
struct Target {
  Area area;
  std::string action;
};

/// What the terminal shows.
struct Picture {
  Canvas canvas;
  std::vector<Target> targets = {};

  /// Returns what a click on this cell asks for; "" for nothing.
  std::string actionAt(int column, int row) const {
    for (const Target& target : targets) {
      if (target.area.contains(column, row)) return target.action;
    }
    return "";
  }
};

}  // namespace desk::terminal
