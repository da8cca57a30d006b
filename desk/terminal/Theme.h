#pragma once

#include "desk/terminal/Canvas.h"

namespace desk::terminal {

/// The colours of the picture. `plain` has none: it uses what every terminal can do.
enum class Theme { plain, dark, light };

/// How an ink is drawn: colours as curses(3) numbers them, and its attributes (A_BOLD and others).
struct Look {
  short foreground;
  short background;
  unsigned attributes;
};

/// Returns how `theme` draws `ink`. The colours of `plain` mean nothing.
Look lookOf(Theme theme, Ink ink);

/// How many inks there are: Ink{0} to Ink{kInks - 1}.
inline constexpr int kInks = static_cast<int>(Ink::hint) + 1;

}  // namespace desk::terminal
