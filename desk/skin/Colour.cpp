#include "desk/skin/Colour.h"

#include <charconv>

namespace desk {

std::optional<Colour> parseColour(std::string_view text) {
  if (!text.starts_with('#') || (text.size() != 7 && text.size() != 9)) return std::nullopt;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number, 16);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  const auto byte = [&](unsigned shift) { return static_cast<std::uint8_t>(number >> shift); };
  return Colour{.red = byte(16), .green = byte(8), .blue = byte(0), .transparency = byte(24)};
}

}  // namespace desk
