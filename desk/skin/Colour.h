#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace desk {

/// A colour of a skin.
struct Colour {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
  std::uint8_t transparency = 0;  ///< 0 for none, 255 for nothing to be seen

  friend bool operator==(const Colour&, const Colour&) = default;
};

/// Returns the colour that `text` gives by numbers, as "#rrggbb" or "#ttrrggbb", tt being the
/// transparency; nothing when it is no such text.
std::optional<Colour> parseColour(std::string_view text);

}  // namespace desk
