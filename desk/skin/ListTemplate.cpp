#include "desk/skin/ListTemplate.h"

#include <algorithm>
#include <array>

#include "desk/skin/Expression.h"

namespace desk {
namespace {

using Kind = Expression::Kind;

[[noreturn]] void refuse(const Expression& part, const std::string& what) {
  throw ExpressionError("here should stand " + what, part.offset);
}

const Expression& required(const Expression& whole, const char* name, Kind kind, const char* what) {
  const Expression* part = whole.find(name);
  if (!part) refuse(whole, std::string("\"") + name + "\", " + what);
  if (part->kind != kind) refuse(*part, what);
  return *part;
}

int numberOf(const Expression& part) {
  if (part.kind != Kind::number || part.number < -kFarthest || part.number > kFarthest) {
    refuse(part, "a number of pixels");
  }
  return static_cast<int>(part.number);
}

std::array<int, 2> pairOf(const Expression& entry, const char* name) {
  const Expression& pair = required(entry, name, Kind::list, "two numbers");
  if (pair.items.size() != 2) refuse(pair, "two numbers");
  return {numberOf(pair.items[0]), numberOf(pair.items[1])};
}

SkinArea areaOf(const Expression& entry) {
  const auto [x, y] = pairOf(entry, "pos");
  const auto [width, height] = pairOf(entry, "size");
  if (width < 0 || height < 0) refuse(entry, "a size that is not negative");
  return {.x = x, .y = y, .width = width, .height = height};
}

SkinFont fontOf(const Expression& font) {
  if (font.kind != Kind::call || font.text != "gFont" || font.items.size() != 2 ||
      font.items[0].kind != Kind::text || numberOf(font.items[1]) <= 0) {
    refuse(font, "gFont(\"NAME\", SIZE)");
  }
  return {.name = font.items[0].text, .size = numberOf(font.items[1])};
}

std::vector<SkinFont> fontsOf(const Expression& whole) {
  std::vector<SkinFont> fonts;
  for (const Expression& font :
       required(whole, "fonts", Kind::list, "the fonts that the entries use").items) {
    fonts.push_back(fontOf(font));
  }
  return fonts;
}

/// What a flag sets.
struct Flag {
  const char* name;
  void (*set)(TextLayout&);
};

constexpr Flag kFlags[] = {
    {"RT_HALIGN_LEFT", [](TextLayout& layout) { layout.halign = Align::begin; }},
    {"RT_HALIGN_CENTER", [](TextLayout& layout) { layout.halign = Align::center; }},
    {"RT_HALIGN_RIGHT", [](TextLayout& layout) { layout.halign = Align::end; }},
    {"RT_VALIGN_TOP", [](TextLayout& layout) { layout.valign = Align::begin; }},
    {"RT_VALIGN_CENTER", [](TextLayout& layout) { layout.valign = Align::center; }},
    {"RT_VALIGN_BOTTOM", [](TextLayout& layout) { layout.valign = Align::end; }},
    {"RT_WRAP", [](TextLayout& layout) { layout.wraps = true; }},
};

void setFlag(TextLayout& layout, const Expression& flag, Notices& notices) {
  const auto* known = std::ranges::find(kFlags, flag.text, &Flag::name);
  if (known != std::end(kFlags)) {
    known->set(layout);
  } else {
    notices.add("the list's flag \"" + flag.text + "\" is not understood");
  }
}

void setFlags(TextLayout& layout, const Expression& flags, Notices& notices) {
  if (flags.kind == Kind::name) setFlag(layout, flags, notices);
  for (const Expression& flag : flags.items) setFlag(layout, flag, notices);
}

std::optional<Colour> colourOf(const Expression& number) {
  if (number.kind != Kind::number) refuse(number, "a colour as 0xTTRRGGBB");
  const auto byte = [&](int shift) { return static_cast<std::uint8_t>(number.number >> shift); };
  return Colour{.red = byte(16), .green = byte(8), .blue = byte(0), .transparency = byte(24)};
}

/// Sets what the entry shows: one of the row's values by its index, or a text.
void setShown(RowEntry& entry, const Expression& shown) {
  if (shown.kind == Kind::text && entry.kind == RowEntry::Kind::text) {
    entry.text = shown.text;
  } else {
    entry.item = numberOf(shown);
  }
}

/// Reads an entry. `fonts`: those of the template.
RowEntry entryOf(const Expression& call, RowEntry::Kind kind, const std::vector<SkinFont>& fonts,
                 Notices& notices) {
  RowEntry entry{.kind = kind, .area = areaOf(call), .item = {}};
  entry.layout.wraps = false;
  std::size_t font = 0;
  for (const auto& [name, value] : call.named) {
    if (name == "font") {
      font = static_cast<std::size_t>(std::max(0, numberOf(value)));
      if (font >= fonts.size()) refuse(value, "the index of a font");
    } else if (name == "flags") {
      setFlags(entry.layout, value, notices);
    } else if (name == "text" || name == "png") {
      setShown(entry, value);
    } else if (name == "color") {
      entry.colour = colourOf(value);
    } else if (name == "color_sel") {
      entry.colour_selected = colourOf(value);
    } else if (name != "pos" && name != "size") {
      notices.add(call.text + ": \"" + name + "\" is not understood");
    }
  }
  if (font < fonts.size()) entry.layout.font = fonts[font];
  return entry;
}

std::optional<RowEntry::Kind> kindOf(const Expression& call) {
  if (call.text == "MultiContentEntryText") return RowEntry::Kind::text;
  if (call.text.starts_with("MultiContentEntryPixmap")) return RowEntry::Kind::picture;
  return std::nullopt;
}

}  // namespace

ListTemplate parseTemplate(std::string_view text, Notices& notices) {
  const Expression whole = parseExpression(text);
  if (whole.kind != Kind::dictionary) refuse(whole, "a dictionary");
  const Expression& entries = required(whole, "template", Kind::list, "a list of entries");
  const std::vector<SkinFont> fonts = fontsOf(whole);
  const int height = numberOf(required(whole, "itemHeight", Kind::number, "a row's height"));
  if (height <= 0) refuse(whole, "an \"itemHeight\" above 0");
  ListTemplate rows{.row_height = height, .entries = {}};
  for (const Expression& call : entries.items) {
    if (call.kind != Kind::call) refuse(call, "an entry");
    if (const auto kind = kindOf(call)) {
      rows.entries.push_back(entryOf(call, *kind, fonts, notices));
    } else {
      notices.add("the list's entry \"" + call.text + "\" is not understood");
    }
  }
  for (const auto& [name, value] : whole.named) {
    if (name != "template" && name != "fonts" && name != "itemHeight") {
      notices.add("the list's \"" + name + "\" is not understood");
    }
  }
  return rows;
}

}  // namespace desk
