#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "Skin.h"

namespace desk {

/// Raises SkinError for what is wrong at `offset` of the text.
[[noreturn]] void refuseAt(std::string_view xml, std::ptrdiff_t offset, const std::string& what);

/// Reads the attributes of one element of a skin. Every operation raises SkinError, with the place
/// of the element, for an attribute that is not to be understood.
class Values {
 public:
  /// `xml`: the text that `node` has been read from.
  Values(std::string_view xml, pugi::xml_node node, const SkinSettings& settings)
      : xml_(xml), node_(node), settings_(settings) {}

  std::string text(const char* name) const { return node_.attribute(name).value(); }

  /// Returns where the element lies in a space of this width and height.
  SkinArea area(int width, int height) const;

  /// Returns a number, `usual` where there is no such attribute.
  int number(const char* name, int usual) const;

  /// Returns whether the attribute is there and is 1.
  bool flag(const char* name) const;

  /// Returns a colour by its numbers or by the skin's name for it; nothing where there is none.
  std::optional<Colour> colour(const char* name) const;

  /// Returns how the element's text stands.
  TextLayout layout() const;

  /// Raises SkinError for an attribute.
  [[noreturn]] void refuse(const char* name) const;

 private:
  std::pair<std::string_view, std::string_view> pair(const char* name) const;
  int placed(std::string_view text, int size, int space) const;
  SkinFont font() const;
  Align align(const char* name) const;

  std::string_view xml_;
  pugi::xml_node node_;
  const SkinSettings& settings_;
};

}  // namespace desk
