#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

#include "desk/drawing/Fonts.h"
#include "desk/skin/Skin.h"

namespace desk::drawing {

/// Where drawn things are put: an SVG element whose own pixels begin at its upper left corner, and
/// outside of which nothing is to be seen.
class Pane {
 public:
  Pane(pugi::xml_node node, int width, int height) : node_(node), width_(width), height_(height) {}

  int width() const { return width_; }
  int height() const { return height_; }

  /// Adds a pane within this one.
  Pane add(const SkinArea& area);

  /// Sets an attribute of the pane's element. What XML cannot hold of the value stands as "\xNN".
  void set(const char* name, const std::string& value);

  /// Fills an area, or the whole pane.
  void fill(const SkinArea& area, const Colour& colour);
  void fill(const Colour& colour) { fill({0, 0, width_, height_}, colour); }

  /// Takes what is pressed anywhere in the pane, not on its letters alone.
  void takePresses();

  /// Draws an area's outline within it, so many pixels wide.
  void outline(const SkinArea& area, int thickness, const Colour& colour);

  /// Writes a line of text that XML can hold; `x` is where its beginning, centre or end is, by
  /// `align`.
  void write(const std::string& line, double x, double baseline, const SkinFont& font, Align align,
             const Colour& colour);

  /// Shows a picture in its own size.
  void show(const std::string& href);

 private:
  pugi::xml_node node_;
  int width_;
  int height_;
};

/// An SVG document (SVG 2) of so many pixels.
class SvgDocument {
 public:
  SvgDocument(int width, int height);

  Pane pane() { return pane_; }

  /// Returns the document's text.
  std::string text() const;

 private:
  pugi::xml_document document_;
  Pane pane_;
};

}  // namespace desk::drawing
