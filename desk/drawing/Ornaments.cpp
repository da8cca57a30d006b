#include "desk/drawing/Ornaments.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace desk::drawing {
namespace {

constexpr std::pair<const char*, Colour> kNamed[] = {
    {"red", {0x9f, 0x13, 0x13}},
    {"green", {0x1f, 0x77, 0x1f}},
    {"yellow", {0xa0, 0x85, 0x00}},
    {"blue", {0x18, 0x18, 0x8b}},
};

}  // namespace

std::optional<Colour> colourNamedIn(const std::string& path) {
  const std::string name = std::filesystem::path(path).filename();
  for (const auto& [known, colour] : kNamed) {
    if (name.find(known) != std::string::npos) return colour;
  }
  return std::nullopt;
}

void drawScrollBar(Pane& list, std::size_t first, std::size_t last, std::size_t count) {
  const int width = std::max(4, list.width() / 100);
  const SkinArea track = {list.width() - width, 0, width, list.height()};
  const auto at = [&](std::size_t row) {
    return static_cast<int>(row * static_cast<std::size_t>(track.height) /
                            std::max<std::size_t>(1, count));
  };
  list.fill(track, kBorder);
  list.fill({track.x, at(first), width, std::max(4, at(last) - at(first))}, kForeground);
}

}  // namespace desk::drawing
