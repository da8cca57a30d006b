#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "desk/skin/Skin.h"
#include "desk/terminal/ColourKeys.h"
#include "desk/terminal/Views.h"

namespace desk::terminal {
namespace {

/// A line of text takes its font's size and the space between lines.
constexpr double kLineSpacing = 1.2;

/// How a skin's pixels become cells.
struct Scale {
  double columns;  ///< columns a pixel
  double rows;     ///< rows a pixel

  /// Returns the scale by which the television picture fills `area`. Where that is too low, text of
  /// the usual size still gets a row a line.
  static Scale filling(const Area& area) {
    constexpr double kLeastRows = 1 / (kLineSpacing * SkinFont::kUsualSize);
    return {static_cast<double>(area.width) / SkinSettings::kUsualWidth,
            std::max(static_cast<double>(area.height) / SkinSettings::kUsualHeight, kLeastRows)};
  }

  Area area(const SkinArea& pixels, const Area& origin) const {
    const int x = cells(pixels.x, columns);
    const int y = cells(pixels.y, rows);
    return {origin.x + x, origin.y + y, std::max(1, cells(pixels.x + pixels.width, columns) - x),
            std::max(1, cells(pixels.y + pixels.height, rows) - y)};
  }

  /// Returns how many rows a line of a font takes; at least one.
  double line(int font_size) const { return std::max(1.0, font_size * kLineSpacing * rows); }

  static int cells(int pixels, double scale) {
    return static_cast<int>(std::lround(pixels * scale));
  }
};

/// Returns where the screen lies in `area`, which shows the middle of the picture: moved as far as
/// its border needs.
Area screenIn(const Area& area, const SkinArea& pixels, const Scale& scale) {
  const int hidden = Scale::cells(SkinSettings::kUsualHeight, scale.rows) - area.height;
  Area screen = scale.area(pixels, {area.x, area.y - hidden / 2, area.width, area.height});
  screen.width = std::min(screen.width, area.width - 2);
  screen.height = std::min(screen.height, area.height - 2);
  screen.x = std::max(area.x + 1, std::min(screen.x, area.x + area.width - screen.width - 1));
  screen.y = std::max(area.y + 1, std::min(screen.y, area.y + area.height - screen.height - 1));
  return screen;
}

/// Returns what the two areas have in common; without width or height where they have nothing.
Area common(const Area& area, const Area& other) {
  const int x = std::max(area.x, other.x);
  const int y = std::max(area.y, other.y);
  const int right = std::min(area.x + area.width, other.x + other.width);
  const int bottom = std::min(area.y + area.height, other.y + other.height);
  return {x, y, std::max(0, right - x), std::max(0, bottom - y)};
}

int alignedIn(int space, int used, Align align) {
  if (align == Align::begin) return 0;
  return align == Align::center ? (space - used) / 2 : space - used;
}

/// Draws an element's text where it is `place`d, as far as that lies in `screen`.
void drawText(Canvas& canvas, const Area& place, const Area& screen, const SkinElement& element,
              double line_height, const std::string& text) {
  const Area seen = common(place, screen);
  const std::vector<std::string> lines = canvas.lettering().wrapped(text, place.width);
  if (lines.empty()) return;
  const auto offset = [&](std::size_t line) {
    return static_cast<int>(std::lround(static_cast<double>(line) * line_height));
  };
  const int used = offset(lines.size() - 1) + 1;
  const int top = place.y + std::max(0, alignedIn(place.height, used, element.layout.valign));
  for (std::size_t line = 0; line < lines.size(); ++line) {
    const int y = top + offset(line);
    const int x =
        std::max(seen.x, place.x + alignedIn(place.width, canvas.lettering().columns(lines[line]),
                                             element.layout.halign));
    if (seen.contains(x, y)) canvas.write(x, y, lines[line], Ink::text, seen.x + seen.width - x);
  }
}

/// Draws what stands for a picture: the letter of a colour key for its button, a plain marker for
/// any other.
void drawPicture(Canvas& canvas, const Area& place, const Area& screen, const std::string& path) {
  const std::string name = std::filesystem::path(path).stem();
  const auto* key = std::ranges::find_if(kColourKeys, [&](const ColourKey& known) {
    return name == "button_" + std::string(known.colour);
  });
  const Area line = common({place.x, place.y + place.height / 2, place.width, 1}, screen);
  if (line.width == 0 || line.height == 0) return;
  if (key == std::end(kColourKeys)) {
    canvas.write(line.x, line.y, canvas.lettering().either("▣", "#"), Ink::picture);
  } else {
    canvas.clear(line, key->ink);
    canvas.write(line.x + line.width / 2, line.y, key->colour.substr(0, 1), key->ink);
  }
}

void drawElement(Picture& picture, const Area& place, const Area& screen,
                 const SkinElement& element, double line_height, const Json& widgets) {
  if (element.kind == SkinElement::Kind::picture) {
    drawPicture(picture.canvas, place, screen, element.name);
    return;
  }
  const bool is_label = element.kind == SkinElement::Kind::label;
  const std::string text = is_label ? element.name : widgets.value(element.name, std::string());
  drawText(picture.canvas, place, screen, element, line_height, text);
  if (!is_label && element.name.starts_with("key_") && !text.empty()) {
    picture.targets.push_back({common(place, screen), element.name.substr(4)});
  }
}

}  // namespace

void drawSkin(Picture& picture, const Area& area, const Json& frame) {
  Notices unheard;
  const SkinScreen skin = parseScreen(frame.at("skin").get<std::string>(), {}, unheard);
  const Scale scale = Scale::filling(area);
  const Area screen = screenIn(area, skin.area, scale);
  picture.canvas.box({screen.x - 1, screen.y - 1, screen.width + 2, screen.height + 2},
                     frame.at("title").get<std::string>());
  for (const SkinElement& element : skin.elements) {
    drawElement(picture, scale.area(element.area, screen), screen, element,
                scale.line(element.layout.font.size), frame.at("widgets"));
  }
}

}  // namespace desk::terminal
