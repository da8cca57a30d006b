#pragma once

#include <optional>

#include "desk/terminal/Picture.h"
#include "desk/terminal/RowsView.h"
#include "desk/terminal/Scroll.h"

namespace desk::terminal {

/// Where in its screen a viewer looks; anew for every other screen.
struct Looking {
  RowsView rows;
  Scroll scroll;
};

/// Whether the frame's screen has a text that the cursor keys scroll, and no cursor.
bool isScrolled(const Json& frame);

/// Draws the frame's screen or dialog in `area`. `seconds_left` is what is left of its time-out;
/// nothing when it has none.
void drawFrame(Picture& picture, const Area& area, const Json& frame, Looking& looking,
               std::optional<int> seconds_left);

/// Draws a screen by its own layout, the frame's "skin", in an area that stands for the television
/// picture. Raises SkinError when the layout is faulty.
void drawSkin(Picture& picture, const Area& area, const Json& frame);

}  // namespace desk::terminal
