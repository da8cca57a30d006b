#include "Skin.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <pugixml.hpp>
#include <utility>

namespace desk {
namespace {

/// Returns the line and column of the byte at `offset`, both from 1.
std::string placeOf(std::string_view xml, std::ptrdiff_t offset) {
  const std::string_view before = xml.substr(0, static_cast<std::size_t>(offset));
  const auto line = std::ranges::count(before, '\n') + 1;
  const auto column = before.size() - (before.rfind('\n') + 1) + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

/// Returns `text` as a number of pixels; nothing when it is none, or beyond any screen.
std::optional<int> numberIn(std::string_view text) {
  constexpr int kMost = 100000;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number < -kMost || number > kMost) return std::nullopt;
  return number;
}

[[noreturn]] void refuse(const pugi::xml_node& node, const char* attribute) {
  throw SkinError(std::string("the skin's element \"") + node.name() + "\" has no usable " +
                  attribute + ": \"" + node.attribute(attribute).value() + "\"");
}

/// Returns the two parts of an attribute such as "10,20".
std::array<std::string_view, 2> pairIn(const pugi::xml_node& node, const char* attribute) {
  const std::string_view text = node.attribute(attribute).value();
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) refuse(node, attribute);
  return {text.substr(0, comma), text.substr(comma + 1)};
}

/// Returns where an element of `size` begins that is to be at `text`: pixels, or "center" of
/// `space`.
int placed(const pugi::xml_node& node, std::string_view text, int size, int space) {
  if (text == "center") return (space - size) / 2;
  const std::optional<int> pixels = numberIn(text);
  if (!pixels) refuse(node, "position");
  return *pixels;
}

/// Returns where the element lies in a space of this width and height.
SkinArea areaOf(const pugi::xml_node& node, int width, int height) {
  const auto size = pairIn(node, "size");
  const std::optional<int> own_width = numberIn(size[0]);
  const std::optional<int> own_height = numberIn(size[1]);
  if (!own_width || !own_height || *own_width < 0 || *own_height < 0) refuse(node, "size");
  const auto position = pairIn(node, "position");
  return {.x = placed(node, position[0], *own_width, width),
          .y = placed(node, position[1], *own_height, height),
          .width = *own_width,
          .height = *own_height};
}

/// Returns the size of a font such as "Regular;20".
int fontSizeOf(const pugi::xml_node& node) {
  const pugi::xml_attribute font = node.attribute("font");
  if (!font) return SkinElement::kUsualFontSize;
  const std::string_view text = font.value();
  const std::optional<int> size = numberIn(text.substr(text.find(';') + 1));
  if (!size || *size <= 0) refuse(node, "font");
  return *size;
}

Align alignOf(std::string_view text) {
  if (text == "center") return Align::center;
  return text == "right" || text == "bottom" ? Align::end : Align::begin;
}

std::optional<SkinElement> elementOf(const pugi::xml_node& node, const SkinArea& screen) {
  const bool is_picture = std::string_view(node.name()) == "ePixmap";
  if (!is_picture && std::string_view(node.name()) != "widget") return std::nullopt;
  const char* named_by = is_picture ? "pixmap" : node.attribute("name") ? "name" : "source";
  return SkinElement{
      .kind = is_picture ? SkinElement::Kind::picture : SkinElement::Kind::text,
      .name = node.attribute(named_by).value(),
      .area = areaOf(node, screen.width, screen.height),
      .font_size = fontSizeOf(node),
      .halign = alignOf(node.attribute("halign").value()),
      .valign = alignOf(node.attribute("valign").value()),
  };
}

}  // namespace

SkinScreen parseScreen(std::string_view xml) {
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(xml.data(), xml.size());
  if (!parsed) {
    throw SkinError(std::string("the skin is faulty at ") + placeOf(xml, parsed.offset) + ": " +
                    parsed.description());
  }
  const pugi::xml_node screen = document.child("screen");
  if (!screen) throw SkinError("the skin has no element \"screen\"");

  SkinScreen result{.area = areaOf(screen, SkinScreen::kPictureWidth, SkinScreen::kPictureHeight),
                    .elements = {}};
  std::vector<std::pair<int, SkinElement>> elements;
  for (const pugi::xml_node& node : screen.children()) {
    if (auto element = elementOf(node, result.area)) {
      elements.emplace_back(node.attribute("zPosition").as_int(), std::move(*element));
    }
  }
  std::ranges::stable_sort(elements, {}, [](const auto& element) { return element.first; });
  for (auto& [z, element] : elements) result.elements.push_back(std::move(element));
  return result;
}

}  // namespace desk
