#pragma once

#include <string_view>

#include "desk/terminal/Canvas.h"

namespace desk::terminal {

/// A colour key of the remote control, and how it is drawn. A screen's widget "key_COLOUR" labels
/// it.
struct ColourKey {
  std::string_view colour;
  Ink ink;
};

/// The colour keys, in the order in which the remote control has them.
inline constexpr ColourKey kColourKeys[] = {
    {"red", Ink::red},
    {"green", Ink::green},
    {"yellow", Ink::yellow},
    {"blue", Ink::blue},
};

}  // namespace desk::terminal
