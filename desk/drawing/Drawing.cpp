#include "desk/drawing/Drawing.h"

#include <algorithm>
#include <utility>

#include "base/Escape.h"
#include "desk/drawing/BaseSkin.h"
#include "desk/drawing/Ornaments.h"

namespace desk::drawing {
namespace {

/// Lengths in a picture that is so many pixels high, by those in one of 720.
int scaled(int pixels, int height) {
  return std::max(1, pixels * height / 720);
}

/// Returns how a list without a template shows its rows: their text.
ListTemplate plainRows(const SkinElement& list) {
  TextLayout layout = list.layout;
  layout.valign = Align::center;
  layout.wraps = false;
  const int height = list.row_height.value_or(layout.font.size * 3 / 2);
  const SkinArea area = {10, 0, std::max(0, list.area.width - 20), height};
  return {.row_height = height,
          .entries = {{.kind = RowEntry::Kind::text,
                       .area = area,
                       .item = static_cast<int>(kRowText),
                       .layout = layout}}};
}

/// Returns a row's value, "" where it has none.
std::string valueOf(const std::vector<std::string>& values, const RowEntry& entry) {
  if (!entry.item) return entry.text;
  const auto index = static_cast<std::size_t>(std::max(0, *entry.item));
  return index < values.size() ? values[index] : "";
}

double aligned(double space, double used, Align align) {
  if (align == Align::begin) return 0;
  return align == Align::center ? (space - used) / 2 : space - used;
}

}  // namespace

Drawing::Drawing(SkinFile file, FindPicture find_picture, std::function<void()> on_screen)
    : skin_(std::move(file.skin)),
      base_(baseSkin(skin_.settings.width, skin_.settings.height)),
      notices_(std::move(file.notices)),
      fonts_(skin_.settings, file.directory, notices_),
      find_picture_(std::move(find_picture)),
      on_screen_(std::move(on_screen)) {}

std::string Drawing::draw(const Frame& frame, std::optional<int> seconds_left) {
  const LayerView* const top = frame.top();
  const Shown shown = top ? shownBy(*top, seconds_left) : Shown();
  if (std::exchange(screen_, shown.screen) != shown.screen) on_screen_();
  SvgDocument document(skin_.settings.width, skin_.settings.height);
  Pane picture = document.pane();
  picture.set("role", "group");
  picture.set("aria-label", shown.title);
  picture.fill(kProgramme);
  if (top) drawScreen(picture, layoutOf(*top), shown);
  return document.text();
}

/// Returns the layout of a screen or dialog; an empty one, with a notice, where there is none.
SkinScreen Drawing::layoutOf(const LayerView& layer) {
  const auto* const screen = layer.as<ScreenContent>();
  if (screen && !screen->skin.empty()) {
    return parseScreen(screen->skin, skin_.settings, notices_);
  }
  const std::string& name = layer.screen;
  for (const Skin* skin : {&skin_, &base_}) {
    const auto found = skin->screens.find(name);
    if (found != skin->screens.end()) return found->second;
  }
  notices_.add("the skin has no screen \"" + name + "\"");
  return {.area = {0, 0, skin_.settings.width, skin_.settings.height}};
}

void Drawing::drawScreen(Pane& picture, const SkinScreen& screen, const Shown& shown) {
  if (screen.has_border) drawBorder(picture, screen, shown);
  Pane pane = picture.add(screen.area);
  pane.set("data-screen", shown.screen);
  pane.fill(screen.background.value_or(kBackground));
  for (const SkinElement& element : screen.elements) {
    Pane place = pane.add(element.area);
    drawElement(place, element, shown);
  }
}

/// Draws the border that the framework puts around a screen, with its title.
void Drawing::drawBorder(Pane& picture, const SkinScreen& screen, const Shown& shown) {
  const int edge = scaled(2, picture.height());
  const int bar = scaled(44, picture.height());
  const SkinArea& area = screen.area;
  Pane frame =
      picture.add({area.x - edge, area.y - bar, area.width + 2 * edge, area.height + bar + edge});
  frame.fill(kBorder);
  Pane title = frame.add({0, 0, frame.width(), bar});
  TextLayout layout;
  layout.font.size = scaled(28, picture.height());
  layout.halign = layout.valign = Align::center;
  layout.wraps = false;
  drawText(title, layout, screen.title.empty() ? shown.title : screen.title, kForeground, false);
}

void Drawing::drawElement(Pane& pane, const SkinElement& element, const Shown& shown) {
  if (element.kind == SkinElement::Kind::picture) {
    pane.set("data-picture", element.name);
    drawPicture(pane, element.name);
    return;
  }
  if (element.kind == SkinElement::Kind::widget) {
    pane.set("data-widget", element.name);
    if (element.name.starts_with("key_")) pane.takePresses();
  }
  if (!element.is_transparent) pane.fill(element.background.value_or(kBackground));
  if (element.kind == SkinElement::Kind::label) {
    drawText(pane, element.layout, element.name, element.foreground.value_or(kForeground), false);
  } else if (const auto text = shown.texts.find(element.name); text != shown.texts.end()) {
    drawText(pane, element.layout, text->second, element.foreground.value_or(kForeground),
             shown.shows_end);
  } else if (element.name == shown.list) {
    drawList(pane, element, shown);
  } else if (skin_.screens.contains(shown.screen)) {
    notices_.add("the screen \"" + shown.screen + "\" has no widget \"" + element.name + "\"");
  }
}

void Drawing::drawText(Pane& pane, const TextLayout& layout, const std::string& text,
                       const Colour& colour, bool shows_end) {
  const std::vector<std::string> lines =
      fonts_.linesOf(base::escapeForXml(text), layout, pane.width());
  const double height = fonts_.lineHeightOf(layout.font);
  const double used = height * static_cast<double>(lines.size());
  double top = aligned(pane.height(), used, layout.valign);
  if (used > pane.height()) top = shows_end ? pane.height() - used : 0;
  const double x = aligned(pane.width(), 0, layout.halign);
  for (const std::string& line : lines) {
    const bool is_seen = top + height > 0 && top < pane.height();
    if (is_seen && !line.empty()) {
      pane.write(line, x, top + fonts_.baselineOf(layout.font), layout.font, layout.halign, colour);
    }
    top += height;
  }
}

/// Draws a picture, or what stands for one that is not there: a frame, in the colour that its name
/// says.
void Drawing::drawPicture(Pane& pane, const std::string& path) {
  if (const auto href = path.starts_with('/') ? find_picture_(path) : std::nullopt) {
    pane.show(*href);
    return;
  }
  const SkinArea area = {0, 0, pane.width(), pane.height()};
  if (const auto colour = colourNamedIn(path)) {
    pane.fill(area, *colour);
  } else {
    pane.outline(area, 2, kBorder);
  }
}

void Drawing::drawList(Pane& pane, const SkinElement& element, const Shown& shown) {
  const ListTemplate rows = element.rows.value_or(plainRows(element));
  const auto page = static_cast<std::size_t>(std::max(1, pane.height() / rows.row_height));
  const std::size_t first = shown.selected / page * page;
  const std::size_t last = std::min(first + page, shown.rows.size());
  pane.set("role", "listbox");
  pane.set("aria-label", shown.title);
  for (std::size_t index = first; index < last; ++index) {
    const bool is_selected = shown.has_cursor && index == shown.selected;
    const int top = static_cast<int>(index - first) * rows.row_height;
    Pane row = pane.add({0, top, pane.width(), rows.row_height});
    row.set("id", "row-" + std::to_string(index));
    row.set("role", "option");
    row.set("aria-selected", is_selected ? "true" : "false");
    row.set("aria-posinset", std::to_string(index + 1));
    row.set("aria-setsize", std::to_string(shown.rows.size()));
    row.takePresses();
    if (is_selected) row.fill(element.background_selected.value_or(kSelected));
    const Colour usual = element.foreground.value_or(kForeground);
    drawRow(row, rows, shown.rows[index],
            is_selected ? element.foreground_selected.value_or(usual) : usual, is_selected);
  }
  const bool is_long = shown.rows.size() > page;
  if (element.scroll_bar == SkinElement::ScrollBar::always ||
      (is_long && element.scroll_bar == SkinElement::ScrollBar::on_demand)) {
    drawScrollBar(pane, first, last, shown.rows.size());
  }
}

void Drawing::drawRow(Pane& pane, const ListTemplate& rows, const std::vector<std::string>& values,
                      const Colour& colour, bool is_selected) {
  for (const RowEntry& entry : rows.entries) {
    const std::string value = valueOf(values, entry);
    Pane place = pane.add(entry.area);
    if (entry.kind == RowEntry::Kind::picture) {
      if (!value.empty()) drawPicture(place, value);
      continue;
    }
    const auto& own = is_selected && entry.colour_selected ? entry.colour_selected : entry.colour;
    drawText(place, entry.layout, value, own.value_or(colour), false);
  }
}

}  // namespace desk::drawing
