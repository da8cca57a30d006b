#include "desk/drawing/Svg.h"

#include <array>
#include <cstdio>
#include <sstream>

#include "base/Escape.h"

namespace desk::drawing {
namespace {

/// Returns a number of pixels with at most two digits behind the point.
std::string number(double pixels) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.2f", pixels);
  std::string shown = text.data();
  shown.erase(shown.find_last_not_of('0') + 1);
  if (shown.ends_with('.')) shown.pop_back();
  return shown == "-0" ? "0" : shown;
}

void setArea(pugi::xml_node node, double x, double y, double width, double height) {
  node.append_attribute("x") = number(x).c_str();
  node.append_attribute("y") = number(y).c_str();
  node.append_attribute("width") = number(width).c_str();
  node.append_attribute("height") = number(height).c_str();
}

/// Sets `name`, such as "fill", to a colour, with its opacity where it is not opaque.
void setColour(pugi::xml_node node, const std::string& name, const Colour& colour) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "#%02x%02x%02x", colour.red, colour.green, colour.blue);
  node.append_attribute(name.c_str()) = text.data();
  if (colour.transparency == 0) return;
  const double opacity = 1 - colour.transparency / 255.0;
  node.append_attribute((name + "-opacity").c_str()) = number(opacity).c_str();
}

constexpr const char* kAnchors[] = {"start", "middle", "end"};

}  // namespace

Pane Pane::add(const SkinArea& area) {
  const pugi::xml_node node = node_.append_child("svg");
  setArea(node, area.x, area.y, area.width, area.height);
  return {node, area.width, area.height};
}

void Pane::set(const char* name, const std::string& value) {
  node_.append_attribute(name) = base::escapeForXml(value).c_str();
}

void Pane::fill(const SkinArea& area, const Colour& colour) {
  const pugi::xml_node rect = node_.append_child("rect");
  setArea(rect, area.x, area.y, area.width, area.height);
  setColour(rect, "fill", colour);
}

void Pane::takePresses() {
  pugi::xml_node rect = node_.append_child("rect");
  setArea(rect, 0, 0, width_, height_);
  rect.append_attribute("fill") = "none";
  rect.append_attribute("pointer-events") = "all";
}

void Pane::outline(const SkinArea& area, int thickness, const Colour& colour) {
  pugi::xml_node rect = node_.append_child("rect");
  const double half = thickness / 2.0;
  setArea(rect, area.x + half, area.y + half, area.width - thickness, area.height - thickness);
  rect.append_attribute("fill") = "none";
  setColour(rect, "stroke", colour);
  rect.append_attribute("stroke-width") = thickness;
}

void Pane::write(const std::string& line, double x, double baseline, const SkinFont& font,
                 Align align, const Colour& colour) {
  pugi::xml_node text = node_.append_child("text");
  text.append_attribute("x") = number(x).c_str();
  text.append_attribute("y") = number(baseline).c_str();
  text.append_attribute("xml:space") = "preserve";
  text.append_attribute("font-family") =
      ("skin-" + plainName(font.name) + ", DejaVu Sans, sans-serif").c_str();
  text.append_attribute("font-size") = font.size;
  text.append_attribute("text-anchor") = kAnchors[static_cast<int>(align)];
  setColour(text, "fill", colour);
  text.text() = line.c_str();
}

void Pane::show(const std::string& href) {
  node_.append_child("image").append_attribute("href") = href.c_str();
}

SvgDocument::SvgDocument(int width, int height)
    : pane_(document_.append_child("svg"), width, height) {
  pane_.set("xmlns", "http://www.w3.org/2000/svg");
  pane_.set("viewBox", "0 0 " + std::to_string(width) + " " + std::to_string(height));
}

std::string SvgDocument::text() const {
  std::ostringstream text;
  document_.save(text, " ", pugi::format_indent | pugi::format_no_declaration);
  return text.str();
}

}  // namespace desk::drawing
