#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "Views.h"
#include "skin/Skin.h"

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
    constexpr double kLeastRows = 1 / (kLineSpacing * SkinElement{}.font_size);
    return {static_cast<double>(area.width) / SkinScreen::kPictureWidth,
            std::max(static_cast<double>(area.height) / SkinScreen::kPictureHeight, kLeastRows)};
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
  const int hidden = Scale::cells(SkinScreen::kPictureHeight, scale.rows) - area.height;
  Area screen = scale.area(pixels, {area.x, area.y - hidden / 2, area.width, area.height});
  screen.x = std::max(area.x + 1, std::min(screen.x, area.x + area.width - screen.width - 1));
  screen.y = std::max(area.y + 1, std::min(screen.y, area.y + area.height - screen.height - 1));
  return screen;
}

int alignedIn(int space, int used, Align align) {
  if (align == Align::begin) return 0;
  return align == Align::center ? (space - used) / 2 : space - used;
}

void drawText(Picture& picture, const Area& area, const SkinElement& element, double line_height,
              const std::string& text) {
  Canvas& canvas = picture.canvas;
  const std::vector<std::string> lines = canvas.lettering().wrapped(text, area.width);
  if (lines.empty()) return;
  const auto offset = [&](std::size_t line) {
    return static_cast<int>(std::lround(static_cast<double>(line) * line_height));
  };
  const int used = offset(lines.size() - 1) + 1;
  const int top = area.y + std::max(0, alignedIn(area.height, used, element.valign));
  for (std::size_t line = 0; line < lines.size() && top + offset(line) < area.y + area.height;
       ++line) {
    const int x =
        area.x + alignedIn(area.width, canvas.lettering().columns(lines[line]), element.halign);
    canvas.write(x, top + offset(line), lines[line], Ink::text, area.x + area.width - x);
  }
}

/// The pictures that a skin may name, and what stands for them; any other is a plain marker.
struct Button {
  const char* file;
  const char* tag;
  Ink ink;
};

constexpr Button kButtons[] = {
    {"button_red", " r ", Ink::red},
    {"button_green", " g ", Ink::green},
    {"button_yellow", " y ", Ink::yellow},
    {"button_blue", " b ", Ink::blue},
};

void drawPicture(Canvas& canvas, const Area& area, const std::string& path) {
  const std::string name = std::filesystem::path(path).stem();
  const auto* button =
      std::ranges::find_if(kButtons, [&](const Button& known) { return name == known.file; });
  const int middle = area.y + area.height / 2;
  if (button == std::end(kButtons)) {
    canvas.write(area.x, middle, canvas.lettering().either("▣", "#"), Ink::picture);
  } else {
    canvas.write(area.x, middle, button->tag, button->ink);
  }
}

}  // namespace

void drawSkin(Picture& picture, const Area& area, const Json& frame) {
  const SkinScreen skin = parseScreen(frame.at("skin").get<std::string>());
  const Scale scale = Scale::filling(area);
  const Area screen = screenIn(area, skin.area, scale);
  picture.canvas.box({screen.x - 1, screen.y - 1, screen.width + 2, screen.height + 2},
                     frame.at("title").get<std::string>());
  for (const SkinElement& element : skin.elements) {
    const Area place = scale.area(element.area, screen);
    if (element.kind == SkinElement::Kind::picture) {
      drawPicture(picture.canvas, place, element.name);
      continue;
    }
    drawText(picture, place, element, scale.line(element.font_size),
             frame.at("widgets").value(element.name, std::string()));
    if (element.name.starts_with("key_"))
      picture.targets.push_back({place, element.name.substr(4)});
  }
}

}  // namespace desk::terminal
