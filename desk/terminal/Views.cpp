#include "desk/terminal/Views.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "desk/skin/Skin.h"

namespace desk::terminal {
namespace {

using Lines = std::vector<std::string>;

std::string textOf(const Json& frame, const char* key) {
  return frame.value(key, std::string());
}

/// Returns the title, or the name of the screen that has none.
std::string headingOf(const Json& frame) {
  const std::string title = textOf(frame, "title");
  return title.empty() ? textOf(frame, "screen") : title;
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
std::string positionOf(const Json& frame) {
  const std::size_t count = frame.at("rows").size();
  if (count == 0) return "nothing here";
  return std::to_string(frame.at("selected").get<int>() + 1) + "/" + std::to_string(count);
}

void drawList(Picture& picture, const Area& area, const Json& frame, Looking& looking) {
  picture.canvas.box(area, headingOf(frame));
  picture.canvas.boxNote(area, positionOf(frame));
  const Area inside = area.inside();
  looking.rows.draw(picture, {inside.x + 1, inside.y, inside.width - 2, inside.height}, frame);
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

/// Draws a dialog: its text and, below it, its rows. Where there is no room for all, the rows keep
/// up to half of it, but never less than two.
void drawDialog(Picture& picture, const Area& space, const Json& frame, Looking& looking,
                const std::string& heading, Ink ink, const std::string& note) {
  constexpr int kLeastWidth = 40;
  constexpr int kEdges = 6;    // the border and two blanks on either side
  constexpr int kMargins = 4;  // the border and an empty line above and below
  constexpr int kBar = 2;
  Canvas& canvas = picture.canvas;
  const Lettering& lettering = canvas.lettering();
  const Lines text = lettering.wrapped(textOf(frame, "text"), space.width - kEdges - 2);
  Lines shown = text;
  for (const Json& row : frame.at("rows")) shown.push_back("> " + row.at(0).get<std::string>());
  const int rows = static_cast<int>(frame.at("rows").size());
  const int text_rows = static_cast<int>(text.size());
  const int gap = rows > 0 ? 1 : 0;
  const int height = text_rows + gap + rows + kMargins;
  const int bar = height > space.height ? kBar : 0;
  const int width = std::max(
      {kLeastWidth, widest(lettering, shown) + bar + kEdges, lettering.columns(heading) + kEdges});
  const Area box = centred(space, width, height);
  canvas.box(box, heading, ink, ink == Ink::border ? Ink::heading : ink);
  if (!note.empty()) canvas.boxNote(box, note, Ink::notice);

  const Area inside = {box.x + 3, box.y + 2, box.width - kEdges, box.height - kMargins};
  const int kept = std::min(rows, std::max(2, inside.height / 2));
  const int text_room = std::min(text_rows, std::max(1, inside.height - gap - kept));
  drawLines(canvas, {inside.x, inside.y, inside.width, text_room}, text);
  const int rows_room = inside.height - text_room - gap;
  if (rows > 0) {
    looking.rows.draw(picture, {inside.x, inside.y + text_room + gap, inside.width, rows_room},
                      frame);
  }
}

void drawMessage(Picture& picture, const Area& space, const Json& frame, Looking& looking,
                 std::optional<int> seconds_left) {
  const std::string type = textOf(frame, "type");
  const std::string title = textOf(frame, "title");
  const std::string heading = title + (title.empty() ? "[" : " [") + type + "]";
  const std::string note = seconds_left ? "closes in " + std::to_string(*seconds_left) + " s" : "";
  drawDialog(picture, space, frame, looking, heading, type == "error" ? Ink::error : Ink::border,
             note);
}

void drawChoice(Picture& picture, const Area& space, const Json& frame, Looking& looking) {
  drawDialog(picture, space, frame, looking, headingOf(frame), Ink::border, positionOf(frame));
}

const char* runningNote(const Json& frame) {
  return frame.at("running").get<bool>() ? "running" : "finished";
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

void drawConsole(Picture& picture, const Area& area, const Json& frame, Looking& looking) {
  Canvas& canvas = picture.canvas;
  canvas.box(area, headingOf(frame));
  const Area inside = area.inside();
  const Lines lines =
      canvas.lettering().wrapped(withLineBreaks(textOf(frame, "text")), inside.width);
  const int count = static_cast<int>(lines.size());
  const int top = looking.scroll.top(count, inside.height, count - 1);
  const int below = std::max(0, count - top - inside.height);
  const std::string more = below > 0 ? std::to_string(below) + " more below, " : "";
  canvas.boxNote(area, more + runningNote(frame), Ink::notice);
  for (int row = 0; row < std::min(inside.height, count - top); ++row) {
    canvas.write(inside.x, inside.y + row, lines[static_cast<std::size_t>(top + row)], Ink::text,
                 inside.width);
  }
}

/// A package's state, and how it is written.
struct State {
  const char* name;
  const char* ascii;
  const char* utf8;
  Ink ink;
};

constexpr State kStates[] = {
    {"waiting", " ", " ", Ink::description},
    {"running", ">", "▶", Ink::notice},
    {"done", "+", "✓", Ink::green},
    {"failed", "x", "✗", Ink::error},
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

void drawPackages(Picture& picture, const Area& area, const Json& frame, Looking& looking) {
  constexpr int kStateColumns = 10;
  Canvas& canvas = picture.canvas;
  canvas.box(area, headingOf(frame));
  canvas.boxNote(area, runningNote(frame), Ink::notice);
  Area inside = area.inside();
  const Json& packages = frame.at("packages");
  const int count = static_cast<int>(packages.size());
  const auto inState = [&](const char* state) {
    return static_cast<int>(std::ranges::count_if(
        packages, [&](const Json& package) { return package.at("state") == state; }));
  };
  const int ended = inState("done") + inState("failed");
  drawProgress(canvas, {inside.x + 1, inside.y + inside.height - 1, inside.width - 2, 1}, ended,
               count);
  inside.height -= 2;
  const int top = looking.scroll.top(count, inside.height, std::min(ended, count - 1));
  for (int row = 0; row < std::min(inside.height, count - top); ++row) {
    const Json& package = packages.at(static_cast<std::size_t>(top + row));
    const auto* state = std::ranges::find_if(
        kStates, [&](const State& known) { return package.at("state") == known.name; });
    const int y = inside.y + row;
    canvas.write(inside.x + 1, y, canvas.lettering().either(state->utf8, state->ascii), state->ink);
    canvas.write(inside.x + 3, y, state->name, state->ink);
    // The end of a package file's path tells it from others.
    const int room = inside.width - kStateColumns - 3;
    canvas.write(
        inside.x + 2 + kStateColumns, y,
        canvas.lettering().cutFront(package.at("name").get_ref<const std::string&>(), room));
  }
}

}  // namespace

bool isScrolled(const Json& frame) {
  return frame.contains("running");
}

void drawFrame(Picture& picture, const Area& area, const Json& frame, Looking& looking,
               std::optional<int> seconds_left) {
  if (frame.contains("skin")) {
    drawSkin(picture, area, frame);
  } else if (frame.contains("packages")) {
    drawPackages(picture, area, frame, looking);
  } else if (frame.contains("running")) {
    drawConsole(picture, area, frame, looking);
  } else if (frame.contains("type")) {
    drawMessage(picture, area, frame, looking, seconds_left);
  } else if (frame.contains("text")) {
    drawChoice(picture, area, frame, looking);
  } else {
    drawList(picture, area, frame, looking);
  }
}

}  // namespace desk::terminal
