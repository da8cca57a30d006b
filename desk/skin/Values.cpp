#include "desk/skin/Values.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace desk {
namespace {

constexpr std::pair<std::string_view, Align> kAligns[] = {
    {"", Align::begin},        {"left", Align::begin}, {"top", Align::begin},
    {"center", Align::center}, {"right", Align::end},  {"bottom", Align::end},
};

/// Returns `text` as a number; nothing when it is none, or one that is too far out.
std::optional<int> numberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number < -kFarthest || number > kFarthest) return std::nullopt;
  return number;
}

}  // namespace

Lines::Lines(std::string_view text) : begins_({0}) {
  for (std::size_t end = text.find('\n'); end != std::string_view::npos;
       end = text.find('\n', end + 1)) {
    begins_.push_back(static_cast<std::ptrdiff_t>(end + 1));
  }
}

std::string Lines::placed(std::ptrdiff_t offset, const std::string& what) const {
  const std::ptrdiff_t place = std::max<std::ptrdiff_t>(0, offset);
  const auto line = std::prev(std::ranges::upper_bound(begins_, place));
  return "line " + std::to_string(line - begins_.begin() + 1) + ", column " +
         std::to_string(place - *line + 1) + ": " + what;
}

/// Returns what there is to say against an attribute.
std::string Values::complaint(const char* name) const {
  const pugi::xml_attribute attribute = node_.attribute(name);
  const std::string element = std::string("the element \"") + node_.name() + "\"";
  return lines_.placed(node_.offset_debug(), attribute ? element + " has no usable " + name +
                                                             ": \"" + attribute.value() + "\""
                                                       : element + " has no " + name);
}

/// Returns the two parts of an attribute such as "10,20".
std::pair<std::string_view, std::string_view> Values::pair(const char* name) const {
  const std::string_view text = node_.attribute(name).value();
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) refuse(name);
  return {text.substr(0, comma), text.substr(comma + 1)};
}

/// Returns where an element of `size` begins that is to be at `text`: pixels, or "center" of
/// `space`.
int Values::beginning(std::string_view text, int size, int space) const {
  if (text == "center") return (space - size) / 2;
  const std::optional<int> pixels = numberIn(text);
  if (!pixels) refuse("position");
  return *pixels;
}

SkinArea Values::area(int width, int height) const {
  const auto size = pair("size");
  const std::optional<int> own_width = numberIn(size.first);
  const std::optional<int> own_height = numberIn(size.second);
  if (!own_width || !own_height || *own_width < 0 || *own_height < 0) refuse("size");
  const auto position = pair("position");
  return {.x = beginning(position.first, *own_width, width),
          .y = beginning(position.second, *own_height, height),
          .width = *own_width,
          .height = *own_height};
}

std::optional<int> Values::number(const char* name) const {
  const pugi::xml_attribute attribute = node_.attribute(name);
  if (!attribute) return std::nullopt;
  const std::optional<int> number = numberIn(attribute.value());
  if (!number) notice(name);
  return number;
}

std::optional<int> Values::positive(const char* name) const {
  const std::optional<int> found = number(name);
  if (!found || *found > 0) return found;
  notice(name);
  return std::nullopt;
}

bool Values::flag(const char* name) const {
  return number(name) == 1;
}

std::optional<Colour> Values::colour(const char* name) const {
  const pugi::xml_attribute attribute = node_.attribute(name);
  if (!attribute) return std::nullopt;
  if (const auto colour = parseColour(attribute.value())) return colour;
  const auto named = settings_.colours.find(std::string_view(attribute.value()));
  if (named != settings_.colours.end()) return named->second;
  notice(name);
  return std::nullopt;
}

/// Returns a font such as "Regular;20".
SkinFont Values::font() const {
  const pugi::xml_attribute attribute = node_.attribute("font");
  if (!attribute) return {};
  const std::string_view text = attribute.value();
  const std::size_t semicolon = std::min(text.find(';'), text.size());
  const std::optional<int> size = numberIn(text.substr(std::min(semicolon + 1, text.size())));
  if (size && *size > 0) return {.name = std::string(text.substr(0, semicolon)), .size = *size};
  notice("font");
  return {};
}

Align Values::align(const char* name) const {
  const std::string_view text = node_.attribute(name).value();
  for (const auto& [known, align] : kAligns) {
    if (text == known) return align;
  }
  notice(name);
  return Align::begin;
}

TextLayout Values::layout() const {
  return {.font = font(),
          .halign = align("halign"),
          .valign = align("valign"),
          .wraps = !flag("noWrap")};
}

}  // namespace desk
