#pragma once

#include <optional>
#include <string>

#include "desk/drawing/Svg.h"
#include "desk/skin/Colour.h"

namespace desk::drawing {

/// What is drawn where a skin gives no colour.
inline constexpr Colour kProgramme = {0x2c, 0x3e, 0x50};  ///< the television programme behind all
inline constexpr Colour kBackground = {0x12, 0x18, 0x20};
inline constexpr Colour kBorder = {0x3c, 0x50, 0x6c};
inline constexpr Colour kForeground = {0xff, 0xff, 0xff};
inline constexpr Colour kSelected = {0x2f, 0x5a, 0x8f};

/// Returns the colour whose name is a part of the name of the file `path`, as in "button_red.png";
/// nothing for none.
std::optional<Colour> colourNamedIn(const std::string& path);

/// Draws the scroll bar of a list, of which the rows from `first` to before `last` of `count` are
/// shown, at the list's right edge.
void drawScrollBar(Pane& list, std::size_t first, std::size_t last, std::size_t count);

}  // namespace desk::drawing
