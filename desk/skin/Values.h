#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "desk/skin/Skin.h"

namespace desk {

/// Where the lines of a text begin.
class Lines {
 public:
  explicit Lines(std::string_view text);

  /// Returns `what` behind the line and the column of `offset`, both from 1.
  std::string placed(std::ptrdiff_t offset, const std::string& what) const;

 private:
  std::vector<std::ptrdiff_t> begins_;
};

/// Reads the attributes of one element of a skin. An attribute that is not to be understood counts
/// as one that is not there, and is noticed with the place of its element.
class Values {
 public:
  /// `lines`: those of the text that `node` has been read from.
  Values(const Lines& lines, pugi::xml_node node, const SkinSettings& settings, Notices& notices)
      : lines_(lines), node_(node), settings_(settings), notices_(notices) {}

  std::string text(const char* name) const { return node_.attribute(name).value(); }

  /// Returns where the element lies in a space of this width and height. Raises SkinError, with the
  /// place of the element, where that is not to be understood.
  SkinArea area(int width, int height) const;

  /// Returns a number; nothing where there is none.
  std::optional<int> number(const char* name) const;

  /// Returns a number above 0; nothing where there is none.
  std::optional<int> positive(const char* name) const;

  /// Returns whether the attribute is there and is 1.
  bool flag(const char* name) const;

  /// Returns a colour by its numbers or by the skin's name for it; nothing where there is none.
  std::optional<Colour> colour(const char* name) const;

  /// Returns how the element's text stands.
  TextLayout layout() const;

  /// Notices that an attribute is not to be understood.
  void notice(const char* name) const { notices_.add(complaint(name)); }

 private:
  std::string complaint(const char* name) const;
  [[noreturn]] void refuse(const char* name) const { throw SkinError(complaint(name)); }
  std::pair<std::string_view, std::string_view> pair(const char* name) const;
  int beginning(std::string_view text, int size, int space) const;
  SkinFont font() const;
  Align align(const char* name) const;

  const Lines& lines_;
  pugi::xml_node node_;
  const SkinSettings& settings_;
  Notices& notices_;
};

}  // namespace desk
