#pragma once

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "desk/skin/Colour.h"
#include "desk/skin/Layout.h"
#include "desk/skin/ListTemplate.h"
#include "desk/skin/Notices.h"

namespace desk {

/// A layout that cannot be used; what() says why, with the line and column.
class SkinError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One thing that a screen's layout places.
struct SkinElement {
  enum class Kind {
    widget,   ///< what the screen's widget of this name holds
    picture,  ///< a picture of the skin's own
    label,    ///< a text of the skin's own, or a plain area
  };
  enum class ScrollBar { on_demand, always, never };

  Kind kind;
  std::string name;  ///< the widget, the path of the picture, or the label's text
  SkinArea area;     ///< within the screen
  TextLayout layout = {};
  bool is_transparent = false;  ///< whether what is below shows through between the letters
  std::optional<Colour> foreground = {};
  std::optional<Colour> background = {};
  std::optional<Colour> foreground_selected = {};  ///< of a list's row with the cursor
  std::optional<Colour> background_selected = {};
  ScrollBar scroll_bar = ScrollBar::on_demand;
  std::optional<int> row_height = {};     ///< of a list without a template
  std::optional<ListTemplate> rows = {};  ///< how a list shows its rows

  friend bool operator==(const SkinElement&, const SkinElement&) = default;
};

/// The layout of a screen.
struct SkinScreen {
  SkinArea area;
  std::string title = {};
  bool has_border = true;  ///< whether it has a border with its title
  std::optional<Colour> background = {};
  std::vector<SkinElement> elements = {};  ///< lowest first

  friend bool operator==(const SkinScreen&, const SkinScreen&) = default;
};

/// What all screens of a skin have in common.
struct SkinSettings {
  static constexpr int kUsualWidth = 720;
  static constexpr int kUsualHeight = 576;

  int width = kUsualWidth;  ///< of the television picture, in pixels
  int height = kUsualHeight;
  std::map<std::string, Colour, std::less<>> colours = {};     ///< by name
  std::map<std::string, std::string, std::less<>> fonts = {};  ///< their files by name
};

/// A skin: layouts by the names of their screens.
struct Skin {
  SkinSettings settings;
  std::map<std::string, SkinScreen, std::less<>> screens;
};

/// Reads a skin: `xml` is a "skin" element with its resolution, its colours, its fonts and its
/// screens. Screens, elements, attributes and templates that are not to be understood are left out,
/// and noticed. Raises SkinError, with the place, when the text is not well-formed XML, and when it
/// is no such element.
Skin parseSkin(std::string_view xml, Notices& notices);

/// Reads the layout of one screen of a skin with these settings: `xml` is a "screen" element.
/// Raises as parseSkin() does, and where the screen's own place is not to be understood.
SkinScreen parseScreen(std::string_view xml, const SkinSettings& settings, Notices& notices);

}  // namespace desk
