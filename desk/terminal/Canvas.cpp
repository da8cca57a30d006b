#include "desk/terminal/Canvas.h"

#include <algorithm>

namespace desk::terminal {

Canvas::Canvas(Size size, const Lettering& lettering)
    : size_(size),
      lettering_(lettering),
      cells_(static_cast<std::size_t>(size.columns) * static_cast<std::size_t>(size.rows)) {}

bool Canvas::has(int column, int row) const {
  return Area{0, 0, size_.columns, size_.rows}.contains(column, row);
}

/// Blanks what would be left of a wide glyph when the cell is written over.
void Canvas::blankHalves(int column, int row) {
  if (at(column, row).bytes.empty() && has(column - 1, row))
    cells_[index(column - 1, row)].bytes = " ";
  if (has(column + 1, row) && at(column + 1, row).bytes.empty())
    cells_[index(column + 1, row)].bytes = " ";
}

void Canvas::put(int column, int row, const Glyph& glyph, Ink ink) {
  blankHalves(column, row);
  cells_[index(column, row)] = {glyph.bytes, ink};
  if (glyph.columns == 1) return;
  blankHalves(column + 1, row);
  cells_[index(column + 1, row)] = {"", ink};
}

int Canvas::write(int x, int y, std::string_view text, Ink ink, int width) {
  const int end = std::min(x + width, size_.columns);
  int column = x;
  for (const Glyph& glyph : lettering_.glyphs(lettering_.cut(text, end - x))) {
    if (has(column, y)) put(column, y, glyph, ink);
    column += glyph.columns;
  }
  return column - x;
}

void Canvas::clear(const Area& area, Ink ink) {
  for (int row = area.y; row < area.y + area.height; ++row) {
    for (int column = area.x; column < area.x + area.width; ++column) {
      if (has(column, row)) put(column, row, {" ", 1}, ink);
    }
  }
}

void Canvas::box(const Area& area, std::string_view heading, Ink ink, Ink heading_ink) {
  clear(area);
  const std::string_view across = lettering_.either("─", "-");
  const std::string_view down = lettering_.either("│", "|");
  const int right = area.x + area.width - 1;
  const int bottom = area.y + area.height - 1;
  for (int column = area.x + 1; column < right; ++column) {
    write(column, area.y, across, ink);
    write(column, bottom, across, ink);
  }
  for (int row = area.y + 1; row < bottom; ++row) {
    write(area.x, row, down, ink);
    write(right, row, down, ink);
  }
  write(area.x, area.y, lettering_.either("┌", "+"), ink);
  write(right, area.y, lettering_.either("┐", "+"), ink);
  write(area.x, bottom, lettering_.either("└", "+"), ink);
  write(right, bottom, lettering_.either("┘", "+"), ink);
  if (!heading.empty() && area.width > 6) {
    write(area.x + 2, area.y, " " + lettering_.cut(heading, area.width - 6) + " ", heading_ink);
  }
}

void Canvas::boxNote(const Area& area, std::string_view note, Ink ink) {
  const std::string text = " " + std::string(note) + " ";
  write(area.x + area.width - 2 - lettering_.columns(text), area.y + area.height - 1, text, ink);
}

std::string Canvas::line(int row) const {
  std::string text;
  for (int column = 0; column < size_.columns; ++column) text += at(column, row).bytes;
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace desk::terminal
