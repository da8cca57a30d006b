#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "desk/protocol/Frame.h"
#include "desk/terminal/Picture.h"
#include "desk/terminal/RowsView.h"
#include "desk/terminal/Scroll.h"

namespace desk::terminal {

/// Where in a screen or dialog a viewer looks.
struct Looking {
  RowsView rows;
  Scroll scroll;
};

/// That of each layer, by its id.
using Lookings = std::map<std::uint64_t, Looking>;

/// Whether the layer has a text that the cursor keys scroll, and no cursor.
bool isScrolled(const LayerView& layer);

/// Draws the frame's screens and dialogs in `area`, each over those beneath it; only what is on top
/// can be clicked. `seconds_left` is what is left of its time-out; nothing when it has none.
void drawFrame(Picture& picture, const Area& area, const Frame& frame, Lookings& lookings,
               std::optional<int> seconds_left);

/// Draws the colour keys that the frame's screen labels in the row `y`.
void drawLegend(Picture& picture, int y, const Frame& frame);

}  // namespace desk::terminal
