#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "desk/terminal/Picture.h"

namespace desk::terminal {

using Json = nlohmann::ordered_json;

/// The rows of a frame, as many as fit, with the cursor always among them.
class RowsView {
 public:
  /// Draws the rows of `frame`. A row can be clicked; a bar at the right edge shows where the shown
  /// rows lie among all when they do not all fit.
  void draw(Picture& picture, const Area& area, const Json& frame);

  /// Returns the word that moves the cursor as one of the terminal's own actions asks; "" when the
  /// action does not move it.
  std::string wordFor(const std::string& action, const Json& frame) const;

 private:
  int top_ = 0;
  int page_ = 1;
};

}  // namespace desk::terminal
