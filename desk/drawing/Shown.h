#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desk/protocol/Frame.h"

namespace desk::drawing {

/// What a screen's widgets hold, whether it is one of the module's or a dialog of the framework.
struct Shown {
  std::string screen;  ///< the name of its class
  std::string title;
  std::map<std::string, std::string> texts;  ///< of the text widgets, by name
  std::string list;                          ///< the name of the list, "" for none
  std::vector<std::vector<std::string>>
      rows;  ///< the values of each row, as a template counts them
  std::size_t selected = 0;
  bool has_cursor = true;  ///< whether one of the rows is the selected one
  bool shows_end = false;  ///< whether a text that is too long shows its end, not its beginning
};

/// Where the values of a row are: the module's menu has the same.
inline constexpr std::size_t kRowText = 1;
inline constexpr std::size_t kRowDescription = 2;
inline constexpr std::size_t kRowPicture = 3;

/// Returns what a screen or dialog shows; the time-out of a box has `seconds_left`, nothing for
/// none.
Shown shownBy(const LayerView& layer, std::optional<int> seconds_left);

}  // namespace desk::drawing
