#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// A layout that cannot be used; what() says why, with the line and column for faulty XML.
class SkinError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Where something lies within its space: at the beginning (left, top), centred or at the end.
enum class Align { begin, center, end };

/// A rectangle in the skin's pixels.
struct SkinArea {
  int x;
  int y;
  int width;
  int height;

  friend bool operator==(const SkinArea&, const SkinArea&) = default;
};

/// One thing that a screen's layout places.
struct SkinElement {
  enum class Kind { text, picture };
  static constexpr int kUsualFontSize = 20;

  Kind kind;
  std::string name;  ///< the widget whose text it shows, or the path of the picture
  SkinArea area;
  int font_size = kUsualFontSize;  ///< in pixels
  Align halign = Align::begin;
  Align valign = Align::begin;

  friend bool operator==(const SkinElement&, const SkinElement&) = default;
};

/// The layout of a screen, in the pixels of a television picture of kPictureWidth by
/// kPictureHeight.
struct SkinScreen {
  static constexpr int kPictureWidth = 720;
  static constexpr int kPictureHeight = 576;

  SkinArea area;
  std::vector<SkinElement> elements;  ///< lowest first
};

/// Reads the layout of one screen: `xml` is a "screen" element. Elements and attributes that this
/// system does not know are left out. Raises SkinError when it is no such element, or a position,
/// size or font is not to be understood.
SkinScreen parseScreen(std::string_view xml);

}  // namespace desk
