#include "tests/desk/terminal/Pictures.h"

#include <clocale>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace desk::terminal {
namespace {

std::string place(const Area& area) {
  return std::to_string(area.x) + "," + std::to_string(area.y) + " " + std::to_string(area.width) +
         "x" + std::to_string(area.height);
}

/// Returns the cells of a row from `begin` to before `end`, without the blanks after them.
std::string textIn(const Canvas& canvas, int row, int begin, int end) {
  std::string text;
  for (int column = begin; column < end; ++column) text += canvas.at(column, row).bytes;
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// Returns what an edge of a box says.
std::string saidBy(std::string edge, const std::string& across) {
  while (edge.starts_with(across)) edge.erase(0, across.size());
  while (edge.ends_with(across)) edge.erase(edge.size() - across.size());
  if (edge.empty()) return "";
  return edge.starts_with(' ') && edge.ends_with(' ') ? edge.substr(1, edge.size() - 2)
                                                      : "no edge: " + edge;
}

/// What the borders of boxes are made of.
struct Border {
  std::string upper_left, across, upper_right, down, lower_left;
};

const Border kBorders[] = {{"┌", "─", "┐", "│", "└"}, {"+", "-", "+", "|", "+"}};

/// Returns what the box holds whose upper left corner is in this cell.
Lines boxAt(const Canvas& canvas, int x, int y, const Border& border) {
  int right = x + 1;
  while (right + 1 < canvas.size().columns && canvas.at(right, y).bytes != border.upper_right) {
    ++right;
  }
  int bottom = y + 1;
  while (bottom + 1 < canvas.size().rows && canvas.at(x, bottom).bytes != border.lower_left) {
    ++bottom;
  }
  Lines lines = {place({x, y, right - x + 1, bottom - y + 1})};
  const std::string heading = saidBy(textIn(canvas, y, x + 1, right), border.across);
  const std::string note = saidBy(textIn(canvas, bottom, x + 1, right), border.across);
  if (!heading.empty()) lines.front() += " " + heading;
  if (!note.empty()) lines.front() += ", " + note;
  for (int row = y + 1; row < bottom; ++row) {
    const bool is_whole =
        canvas.at(x, row).bytes == border.down && canvas.at(right, row).bytes == border.down;
    const std::string text = textIn(canvas, row, x + is_whole, right + !is_whole);
    if (!text.empty()) lines.push_back(std::to_string(row - y) + " " + text);
  }
  return lines;
}

}  // namespace

Lettering utf8() {
  if (!std::setlocale(LC_CTYPE, "C.UTF-8")) throw std::runtime_error("there is no locale C.UTF-8");
  return Lettering(Lettering::Charset::utf8);
}

Lettering ascii() {
  return Lettering(Lettering::Charset::ascii);
}

SharedRows rows(Rows rows) {
  return std::make_shared<const Rows>(std::move(rows));
}

SharedRows manyRows(int count) {
  Rows many;
  for (int row = 0; row < count; ++row) many.push_back({"row " + std::to_string(row)});
  return rows(std::move(many));
}

LayerView list(int count, int selected) {
  return {.rows = manyRows(count), .selected = static_cast<std::size_t>(selected)};
}

std::string manyLines(int count) {
  std::string text;
  for (int line = 0; line < count; ++line) text += "line " + std::to_string(line) + "\n";
  return text;
}

Frame frame(LayerView layer) {
  if (layer.screen.empty()) layer.screen = "Screen";
  return {.layers = {std::move(layer)}};
}

std::string shown(const Canvas& canvas) {
  std::string text = "\n";
  for (int row = 0; row < canvas.size().rows; ++row) text += canvas.line(row) + "\n";
  return text;
}

std::string pictureOf(const LayerView& layer, Size size, const Lettering& lettering) {
  return shown(canvasOf(layer, size, lettering));
}

Canvas canvasOf(const LayerView& layer, Size size, const Lettering& lettering) {
  Television television(lettering);
  television.show(frame(layer));
  return television.picture(size, kAtStart).canvas;
}

std::vector<Lines> boxes(const Canvas& canvas) {
  std::vector<Lines> all;
  for (int y = 0; y + 1 < canvas.size().rows; ++y) {
    for (int x = 0; x + 1 < canvas.size().columns; ++x) {
      for (const Border& border : kBorders) {
        const bool is_corner = canvas.at(x, y).bytes == border.upper_left &&
                               canvas.at(x + 1, y).bytes == border.across &&
                               canvas.at(x, y + 1).bytes == border.down;
        if (is_corner) all.push_back(boxAt(canvas, x, y, border));
      }
    }
  }
  return all;
}

Lines boxOf(const LayerView& layer, Size size, const Lettering& lettering) {
  const std::vector<Lines> all = boxes(canvasOf(layer, size, lettering));
  return all.size() == 1 ? all.front() : Lines{std::to_string(all.size()) + " boxes"};
}

std::string inInk(const Canvas& canvas, int row, Ink ink) {
  std::string text;
  for (int column = 0; column < canvas.size().columns; ++column) {
    const Cell& cell = canvas.at(column, row);
    text += cell.ink == ink ? cell.bytes : " ";
  }
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

Lines clicks(const Picture& picture) {
  Lines texts;
  for (const auto& [area, action] : picture.targets) texts.push_back(action + " " + place(area));
  return texts;
}

void PrintTo(const Glyph& glyph, std::ostream* stream) {
  *stream << '"' << glyph.bytes << "\" in " << glyph.columns;
}

}  // namespace desk::terminal
