#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desk/drawing/Fonts.h"
#include "desk/drawing/Shown.h"
#include "desk/drawing/SkinFile.h"
#include "desk/drawing/Svg.h"
#include "desk/protocol/Frame.h"
#include "desk/skin/Skin.h"

namespace desk::drawing {

/// Returns what SVG names a picture by, a receiver's path; nothing where there is none.
using FindPicture = std::function<std::optional<std::string>(const std::string& path)>;

/// Draws what a receiver shows as its television would, by a skin: the skin's screens, a screen's
/// own layout, and a layout for each of the framework's dialogs that the skin does not have. What a
/// skin asks for and cannot be drawn is noticed.
class Drawing {
 public:
  /// `on_screen` is called before a screen is drawn in the place of another. Raises
  /// std::runtime_error where the usual font is not installed.
  Drawing(
      SkinFile file, FindPicture find_picture, std::function<void()> on_screen = [] {});

  /// Returns the picture of a frame as an SVG document; `seconds_left` of its time-out, nothing for
  /// none. Raises SkinError for a screen whose own layout is faulty.
  std::string draw(const Frame& frame, std::optional<int> seconds_left);

  /// The fonts that it draws with.
  const Fonts& fonts() const { return fonts_; }

  /// Returns what there is to say about the skin so far.
  const Notices& notices() const { return notices_; }

 private:
  SkinScreen layoutOf(const LayerView& layer);
  void drawScreen(Pane& picture, const SkinScreen& screen, const Shown& shown);
  void drawBorder(Pane& picture, const SkinScreen& screen, const Shown& shown);
  void drawElement(Pane& pane, const SkinElement& element, const Shown& shown);
  void drawText(Pane& pane, const TextLayout& layout, const std::string& text, const Colour& colour,
                bool shows_end);
  void drawPicture(Pane& pane, const std::string& path);
  void drawList(Pane& pane, const SkinElement& element, const Shown& shown);
  void drawRow(Pane& pane, const ListTemplate& rows, const std::vector<std::string>& values,
               const Colour& colour, bool is_selected);

  Skin skin_;
  Skin base_;
  Notices notices_;
  Fonts fonts_;
  FindPicture find_picture_;
  std::function<void()> on_screen_;
  std::string screen_;  ///< the last one
};

}  // namespace desk::drawing
