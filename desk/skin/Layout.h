#pragma once

#include <string>

namespace desk {

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

/// A font by the skin's name for it, and its size in pixels.
struct SkinFont {
  static constexpr int kUsualSize = 20;

  std::string name = "Regular";
  int size = kUsualSize;

  friend bool operator==(const SkinFont&, const SkinFont&) = default;
};

/// How text stands in its area.
struct TextLayout {
  SkinFont font = {};
  Align halign = Align::begin;
  Align valign = Align::begin;
  bool wraps = true;  ///< whether a line that is too long goes on in the next

  friend bool operator==(const TextLayout&, const TextLayout&) = default;
};

/// No number of a skin is larger: nothing is further out than that.
inline constexpr int kFarthest = 100000;

}  // namespace desk
