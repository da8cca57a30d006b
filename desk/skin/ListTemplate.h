#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desk/skin/Colour.h"
#include "desk/skin/Layout.h"
#include "desk/skin/Notices.h"

namespace desk {

/// One of the things that every row of a list shows.
struct RowEntry {
  enum class Kind { text, picture };

  Kind kind;
  SkinArea area;            ///< within the row
  std::optional<int> item;  ///< which of the row's values it shows, the first being 0
  std::string text = {};    ///< what it shows where that is the same for every row
  TextLayout layout = {};
  std::optional<Colour> colour = {};
  std::optional<Colour> colour_selected = {};

  friend bool operator==(const RowEntry&, const RowEntry&) = default;
};

/// How a list shows its rows.
struct ListTemplate {
  int row_height;  ///< in pixels
  std::vector<RowEntry> entries;

  friend bool operator==(const ListTemplate&, const ListTemplate&) = default;
};

/// Reads what the converter "TemplatedMultiContent" is given: a dictionary of "template", "fonts"
/// and "itemHeight". What is not understood is left out, and noticed. Raises ExpressionError.
ListTemplate parseTemplate(std::string_view text, Notices& notices);

}  // namespace desk
