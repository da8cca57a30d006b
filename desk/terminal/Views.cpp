#include "desk/terminal/Views.h"

#include <algorithm>
#include <string>
#include <vector>

#include "desk/protocol/Names.h"
#include "desk/terminal/ColourKeys.h"

namespace desk::terminal {
namespace {

using Lines = std::vector<std::string>;

/// Returns the title, or the name of the screen that has none.
std::string headingOf(const LayerView& layer) {
  return layer.title.empty() ? layer.screen : layer.title;
}

/// Returns an area of this size, or as much as there is, in the middle of `space`.
Area centred(const Area& space, int width, int height) {
  width = std::min(width, space.width);
  height = std::min(height, space.height);
  return {space.x + (space.width - width) / 2, space.y + (space.height - height) / 2, width,
          height};
}

int widest(const Lettering& lettering, const Lines& lines) {
  int columns = 0;
  for (const std::string& line : lines) columns = std::max(columns, lettering.columns(line));
  return columns;
}

/// Returns where the cursor is among the rows.
std::string positionOf(const LayerView& layer) {
  if (layer.rows->empty()) return "nothing here";
  return std::to_string(layer.selected + 1) + "/" + std::to_string(layer.rows->size());
}

void drawList(Picture& picture, const Area& area, const LayerView& layer, Looking& looking) {
  picture.canvas.box(area, headingOf(layer));
  picture.canvas.boxNote(area, positionOf(layer));
  const Area inside = area.inside();
  looking.rows.draw(picture, {inside.x + 1, inside.y, inside.width - 2, inside.height}, layer);
}

/// Draws as many of the lines as fit in the area, the last of them marked if there are more.
void drawLines(Canvas& canvas, const Area& area, const Lines& lines) {
  const int count = static_cast<int>(lines.size());
  for (int row = 0; row < std::min(count, area.height); ++row) {
    const bool is_cut = row == area.height - 1 && count > area.height;
    canvas.write(area.x, area.y + row,
                 is_cut ? canvas.lettering().either("…", "~")
                        : std::string_view(lines[static_cast<std::size_t>(row)]),
                 Ink::text, area.width);
  }
}

/// How a dialog is drawn.
struct DialogStyle {
  std::string heading;
  std::string note = {};
  Ink ink = Ink::border;
};

/// Draws a dialog: its text and, below it, its rows. Where there is no room for all, the rows keep
/// up to half of it, but never less than two.
void drawDialog(Picture& picture, const Area& space, const LayerView& layer, Looking& looking,
                const std::string& message, const DialogStyle& style) {
  constexpr int kLeastWidth = 40;
  constexpr int kEdges = 6;    // the border and two blanks on either side
  constexpr int kMargins = 4;  // the border and an empty line above and below
  constexpr int kBar = 2;
  Canvas& canvas = picture.canvas;
  const Lettering& lettering = canvas.lettering();
  const Lines text = lettering.wrapped(message, space.width - kEdges - 2);
  Lines shown = text;
  for (const Row& row : *layer.rows) shown.push_back("> " + row.text);
  const int rows = static_cast<int>(layer.rows->size());
  const int text_rows = static_cast<int>(text.size());
  const int gap = rows > 0 ? 1 : 0;
  const int height = text_rows + gap + rows + kMargins;
  const int bar = height > space.height ? kBar : 0;
  const int width = std::max({kLeastWidth, widest(lettering, shown) + bar + kEdges,
                              lettering.columns(style.heading) + kEdges});
  const Area box = centred(space, width, height);
  canvas.box(box, style.heading, style.ink, style.ink == Ink::border ? Ink::heading : style.ink);
  if (!style.note.empty()) canvas.boxNote(box, style.note, Ink::notice);

  const Area inside = {box.x + 3, box.y + 2, box.width - kEdges, box.height - kMargins};
  const int kept = std::min(rows, std::max(2, inside.height / 2));
  const int text_room = std::min(text_rows, std::max(1, inside.height - gap - kept));
  drawLines(canvas, {inside.x, inside.y, inside.width, text_room}, text);
  const int rows_room = inside.height - text_room - gap;
  if (rows > 0) {
    looking.rows.draw(picture, {inside.x, inside.y + text_room + gap, inside.width, rows_room},
                      layer);
  }
}

void drawMessage(Picture& picture, const Area& space, const LayerView& layer,
                 const MessageContent& message, Looking& looking, std::optional<int> seconds_left) {
  const std::string type = std::string("[") + nameOf(message.type) + "]";
  drawDialog(picture, space, layer, looking, message.text,
             {.heading = layer.title.empty() ? type : layer.title + " " + type,
              .note = seconds_left ? "closes in " + std::to_string(*seconds_left) + " s" : "",
              .ink = message.type == MessageContent::Type::error ? Ink::error : Ink::border});
}

/// Returns a console's output with every carriage return as a line break.
std::string withLineBreaks(const std::string& output) {
  std::string lines;
  for (std::size_t index = 0; index < output.size(); ++index) {
    if (output.compare(index, 2, "\r\n") == 0) continue;
    lines += output[index] == '\r' ? '\n' : output[index];
  }
  return lines;
}

void drawConsole(Picture& picture, const Area& area, const LayerView& layer,
                 const ConsoleContent& console, Looking& looking) {
  Canvas& canvas = picture.canvas;
  canvas.box(area, headingOf(layer));
  const Area inside = area.inside();
  const Lines lines = canvas.lettering().wrapped(withLineBreaks(console.output), inside.width);
  const int count = static_cast<int>(lines.size());
  const int top = looking.scroll.top(count, inside.height, count - 1);
  const int below = std::max(0, count - top - inside.height);
  const std::string more = below > 0 ? std::to_string(below) + " more below, " : "";
  canvas.boxNote(area, more + statusOf(console.is_running), Ink::notice);
  for (int row = 0; row < std::min(inside.height, count - top); ++row) {
    canvas.write(inside.x, inside.y + row, lines[static_cast<std::size_t>(top + row)], Ink::text,
                 inside.width);
  }
}

/// The sign of a package's state.
struct Sign {
  Package::State state;
  const char* ascii;
  const char* utf8;
  Ink ink;
};

constexpr Sign kSigns[] = {
    {Package::State::waiting, " ", " ", Ink::description},
    {Package::State::running, ">", "▶", Ink::notice},
    {Package::State::done, "+", "✓", Ink::green},
    {Package::State::failed, "x", "✗", Ink::error},
};

/// Draws how many of the packages are over and done with as a bar.
void drawProgress(Canvas& canvas, const Area& line, int ended, int count) {
  const Lettering& lettering = canvas.lettering();
  const std::string figures = " " + std::to_string(ended) + "/" + std::to_string(count);
  const int width = line.width - static_cast<int>(figures.size());
  const int filled = count > 0 ? width * ended / count : width;
  for (int column = 0; column < width; ++column) {
    canvas.write(line.x + column, line.y,
                 column < filled ? lettering.either("█", "#") : lettering.either("░", "."),
                 Ink::border);
  }
  canvas.write(line.x + width, line.y, figures, Ink::text);
}

void drawPackages(Picture& picture, const Area& area, const LayerView& layer,
                  const PackagesContent& content, Looking& looking) {
  constexpr int kStateColumns = 10;
  Canvas& canvas = picture.canvas;
  canvas.box(area, headingOf(layer));
  canvas.boxNote(area, statusOf(content.is_running), Ink::notice);
  Area inside = area.inside();
  const std::vector<Package>& packages = content.packages;
  const int count = static_cast<int>(packages.size());
  const int ended = static_cast<int>(std::ranges::count_if(packages, [](const Package& package) {
    return package.state == Package::State::done || package.state == Package::State::failed;
  }));
  drawProgress(canvas, {inside.x + 1, inside.y + inside.height - 1, inside.width - 2, 1}, ended,
               count);
  inside.height -= 2;
  const int top = looking.scroll.top(count, inside.height, std::min(ended, count - 1));
  for (int row = 0; row < std::min(inside.height, count - top); ++row) {
    const Package& package = packages[static_cast<std::size_t>(top + row)];
    const Sign& sign = *std::ranges::find(kSigns, package.state, &Sign::state);
    const int y = inside.y + row;
    canvas.write(inside.x + 1, y, canvas.lettering().either(sign.utf8, sign.ascii), sign.ink);
    canvas.write(inside.x + 3, y, nameOf(package.state), sign.ink);
    // The end of a package file's path tells it from others.
    const int room = inside.width - kStateColumns - 3;
    canvas.write(inside.x + 2 + kStateColumns, y, canvas.lettering().cutFront(package.name, room));
  }
}

/// Whether the layer is as large as the picture, so that nothing beneath it is to be seen.
bool isLarge(const LayerView& layer) {
  const auto* const screen = layer.as<ScreenContent>();
  return screen ? screen->skin.empty() : isScrolled(layer);
}

void drawLayer(Picture& picture, const Area& area, const LayerView& layer, Looking& looking,
               std::optional<int> seconds_left) {
  if (const auto* const packages = layer.as<PackagesContent>()) {
    drawPackages(picture, area, layer, *packages, looking);
  } else if (const auto* const console = layer.as<ConsoleContent>()) {
    drawConsole(picture, area, layer, *console, looking);
  } else if (const auto* const message = layer.as<MessageContent>()) {
    drawMessage(picture, area, layer, *message, looking, seconds_left);
  } else if (const auto* const choice = layer.as<ChoiceContent>()) {
    drawDialog(picture, area, layer, looking, choice->question,
               {.heading = headingOf(layer), .note = positionOf(layer)});
  } else if (isLarge(layer)) {
    drawList(picture, area, layer, looking);
  } else {
    std::string message;
    for (const std::string& text : messagesOf(*layer.as<ScreenContent>())) message += text + "\n";
    drawDialog(picture, area, layer, looking, message, {.heading = headingOf(layer)});
  }
}

}  // namespace

bool isScrolled(const LayerView& layer) {
  return layer.as<ConsoleContent>() || layer.as<PackagesContent>();
}

void drawFrame(Picture& picture, const Area& area, const Frame& frame, Lookings& lookings,
               std::optional<int> seconds_left) {
  const auto& layers = frame.layers;
  const auto large = std::find_if(layers.rbegin(), layers.rend(), isLarge);
  const auto lowest = large == layers.rend() ? layers.begin() : std::prev(large.base());
  for (auto layer = lowest; layer != layers.end(); ++layer) {
    Looking& looking = lookings[layer->id];
    looking.rows.showCursor(&*layer == frame.top());
    picture.targets.clear();
    drawLayer(picture, area, *layer, looking, seconds_left);
  }
}

void drawLegend(Picture& picture, int y, const Frame& frame) {
  const auto* const screen = frame.top() ? frame.top()->as<ScreenContent>() : nullptr;
  if (!screen) return;
  Canvas& canvas = picture.canvas;
  int x = 1;
  for (const ColourKey& key : kColourKeys) {
    const std::string colour(key.colour);
    const auto label = screen->texts.find("key_" + colour);
    if (label == screen->texts.end() || label->second.empty()) continue;
    const int start = x;
    x += canvas.write(x, y, "[" + colour + "]", key.ink);
    x += 1 + canvas.write(x + 1, y, label->second);
    picture.targets.push_back({{start, y, x - start, 1}, colour});
    x += 3;
  }
}

}  // namespace desk::terminal
