#include "desk/terminal/RowsView.h"

#include <algorithm>

namespace desk::terminal {
namespace {

/// Whether some row has a description: then each takes two lines.
bool hasDescriptions(const Rows& rows) {
  return std::ranges::any_of(rows, [](const Row& row) { return !row.description.empty(); });
}

bool hasPictures(const Rows& rows) {
  return std::ranges::any_of(rows, [](const Row& row) { return !row.picture.empty(); });
}

/// Draws a bar whose thumb shows which `page` of `count` rows, from `top` on, is to be seen.
void drawBar(Canvas& canvas, const Area& area, int top, int page, int count) {
  const Lettering& lettering = canvas.lettering();
  const int thumb = std::max(1, area.height * page / count);
  const int start = (area.height - thumb) * top / std::max(1, count - page);
  for (int row = 0; row < area.height; ++row) {
    const bool is_thumb = row >= start && row < start + thumb;
    canvas.write(area.x + area.width - 1, area.y + row,
                 is_thumb ? lettering.either("█", "#") : lettering.either("░", ":"), Ink::border);
  }
}

}  // namespace

void RowsView::draw(Picture& picture, const Area& area, const LayerView& layer) {
  const Rows& rows = *layer.rows;
  const bool has_pictures = hasPictures(rows);
  const int height = hasDescriptions(rows) ? 2 : 1;
  const int count = static_cast<int>(rows.size());
  const int selected = static_cast<int>(layer.selected);
  Canvas& canvas = picture.canvas;
  page_ = std::max(1, area.height / height);
  top_ = std::clamp(top_, selected - page_ + 1, selected);
  top_ = std::clamp(top_, 0, std::max(0, count - page_));

  Area line = {area.x, area.y, area.width, 1};
  if (page_ < count) {
    drawBar(canvas, area, top_, page_, count);
    line.width -= 2;
  }
  for (int index = top_; index < std::min(count, top_ + page_); ++index) {
    const Row& row = rows[static_cast<std::size_t>(index)];
    const bool is_selected = shows_cursor_ && index == selected;
    const Ink ink = is_selected ? Ink::cursor : Ink::text;
    picture.targets.push_back(
        {{line.x, line.y, line.width, height}, "row:" + std::to_string(index)});
    canvas.clear({line.x, line.y, line.width, height}, ink);
    int column = 2;
    if (is_selected) canvas.write(line.x, line.y, ">", ink);
    if (has_pictures) {
      if (!row.picture.empty()) {
        canvas.write(line.x + column, line.y, canvas.lettering().either("▣", "#"),
                     is_selected ? ink : Ink::picture);
      }
      column += 2;
    }
    canvas.write(line.x + column, line.y, row.text, ink, line.width - column);
    if (height == 2) {
      canvas.write(line.x + column + 2, line.y + 1, row.description,
                   is_selected ? Ink::cursor_description : Ink::description,
                   line.width - column - 2);
    }
    line.y += height;
  }
}

std::string RowsView::wordFor(const std::string& action, const LayerView& layer) const {
  const int last = static_cast<int>(layer.rows->size()) - 1;
  const int selected = static_cast<int>(layer.selected);
  if (last < 0) return "";
  if (action == action::kFirst) return "row:0";
  if (action == action::kLast) return "row:" + std::to_string(last);
  if (action == action::kPageUp) return "row:" + std::to_string(std::max(0, selected - page_));
  if (action == action::kPageDown) return "row:" + std::to_string(std::min(last, selected + page_));
  return "";
}

}  // namespace desk::terminal
