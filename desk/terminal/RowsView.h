#pragma once

#include <string>

#include "desk/protocol/Frame.h"
#include "desk/terminal/Picture.h"

namespace desk::terminal {

/// The rows of a screen or dialog, as many as fit, with the selected one always among them.
class RowsView {
 public:
  /// Says whether the cursor is shown: that of what lies beneath a dialog is not.
  void showCursor(bool is_shown) { shows_cursor_ = is_shown; }

  /// Draws the rows of `layer`. A row can be clicked; a bar at the right edge shows where the shown
  /// rows lie among all when they do not all fit.
  void draw(Picture& picture, const Area& area, const LayerView& layer);

  /// Returns the word that moves the cursor as one of the terminal's own actions asks; "" when the
  /// action does not move it.
  std::string wordFor(const std::string& action, const LayerView& layer) const;

 private:
  int top_ = 0;
  int page_ = 1;
  bool shows_cursor_ = true;
};

}  // namespace desk::terminal
