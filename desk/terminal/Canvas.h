#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "desk/terminal/Lettering.h"

namespace desk::terminal {

/// What something drawn is; a theme gives it colours and attributes.
enum class Ink {
  text,
  description,
  border,
  heading,
  cursor,
  cursor_description,
  picture,
  red,
  green,
  yellow,
  blue,
  error,
  notice,
  hint,
};

/// The size of a terminal, in cells.
struct Size {
  int columns;
  int rows;

  friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle of cells.
struct Area {
  int x;
  int y;
  int width;
  int height;

  bool contains(int column, int row) const {
    return column >= x && column < x + width && row >= y && row < y + height;
  }

  /// Returns what is left within a border.
  Area inside() const { return {x + 1, y + 1, width - 2, height - 2}; }

  friend bool operator==(const Area&, const Area&) = default;
};

/// One cell. The second cell of a glyph that takes two columns has no bytes.
struct Cell {
  std::string bytes = " ";
  Ink ink = Ink::text;
};

/// A picture made of cells. What is drawn outside of it is left out.
class Canvas {
 public:
  Canvas(Size size, const Lettering& lettering);

  Size size() const { return size_; }
  const Lettering& lettering() const { return lettering_; }

  /// Returns the cell at a place within the canvas.
  const Cell& at(int column, int row) const { return cells_[index(column, row)]; }

  /// Writes `text` as one line from the cell (x, y) on, in at most `width` columns: a longer text
  /// is cut and marked so. Returns how many columns it takes.
  int write(int x, int y, std::string_view text, Ink ink, int width);

  /// Writes the whole text, as far as the canvas goes.
  int write(int x, int y, std::string_view text, Ink ink = Ink::text) {
    return write(x, y, text, ink, size_.columns - x);
  }

  /// Fills the area with blanks.
  void clear(const Area& area, Ink ink = Ink::text);

  /// Clears the area and draws its border, with `heading` in the upper edge.
  void box(const Area& area, std::string_view heading, Ink ink = Ink::border,
           Ink heading_ink = Ink::heading);

  /// Writes `note` into the lower edge of a box, at its right end.
  void boxNote(const Area& area, std::string_view note, Ink ink = Ink::border);

  /// Returns the row as text, without the blanks at its end.
  std::string line(int row) const;

 private:
  std::size_t index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.columns) +
           static_cast<std::size_t>(column);
  }

  bool has(int column, int row) const;
  void put(int column, int row, const Glyph& glyph, Ink ink);
  void blankHalves(int column, int row);

  Size size_;
  Lettering lettering_;
  std::vector<Cell> cells_;
};

}  // namespace desk::terminal
