#include "desk/skin/Skin.h"

#include <algorithm>
#include <array>
#include <pugixml.hpp>
#include <sstream>
#include <utility>

#include "desk/skin/Expression.h"
#include "desk/skin/Values.h"

namespace desk {
namespace {

/// The attributes that an element may have, parted by blanks.
struct Known {
  const char* element;
  const char* attributes;
};

constexpr Known kKnown[] = {
    {"screen", "name position size title flags backgroundColor"},
    {"widget",
     "name source render position size zPosition font halign valign noWrap transparent "
     "foregroundColor backgroundColor foregroundColorSelected backgroundColorSelected "
     "scrollbarMode itemHeight"},
    {"ePixmap", "name pixmap position size zPosition alphatest transparent"},
    {"eLabel",
     "name text position size zPosition font halign valign noWrap transparent foregroundColor "
     "backgroundColor"},
    {"convert", "type"},
    {"skin", ""},
    {"output", "id"},
    {"resolution", "xres yres bpp"},
    {"colors", ""},
    {"color", "name value"},
    {"fonts", ""},
    {"font", "name filename"},
};

constexpr std::pair<const char*, SkinElement::Kind> kKinds[] = {
    {"widget", SkinElement::Kind::widget},
    {"ePixmap", SkinElement::Kind::picture},
    {"eLabel", SkinElement::Kind::label},
};

constexpr std::pair<const char*, SkinElement::ScrollBar> kScrollBars[] = {
    {"", SkinElement::ScrollBar::on_demand},
    {"showOnDemand", SkinElement::ScrollBar::on_demand},
    {"showAlways", SkinElement::ScrollBar::always},
    {"showNever", SkinElement::ScrollBar::never},
};

constexpr const char* kLeftOut = "; it is left out";

/// Reads the layouts of screens out of one text.
class Reader {
 public:
  Reader(std::string_view xml, SkinSettings settings, Notices& notices)
      : lines_(xml), settings_(std::move(settings)), notices_(notices) {
    const pugi::xml_parse_result parsed = document_.load_buffer(xml.data(), xml.size());
    if (!parsed) throw SkinError(lines_.placed(parsed.offset, parsed.description()));
  }

  SkinScreen readScreen() { return screenOf(root("screen")); }

  Skin readSkin() {
    const pugi::xml_node skin = root("skin");
    for (const pugi::xml_node& node : childrenOf(skin, {"output", "colors", "fonts", "screen"})) {
      readSettings(node);
    }
    Skin result;
    for (const pugi::xml_node& node : skin.children("screen")) addScreen(result, node);
    result.settings = std::move(settings_);
    return result;
  }

 private:
  /// Returns the element that the text is.
  pugi::xml_node root(const char* name) const {
    const pugi::xml_node node = document_.document_element();
    if (std::string_view(node.name()) == name) return node;
    throw SkinError(lines_.placed(
        node.offset_debug(), std::string("the element \"") + node.name() + "\" is no " + name));
  }

  /// Returns the elements within an element that have one of the names, and notices the others,
  /// and the attributes of the element that are not known.
  std::vector<pugi::xml_node> childrenOf(const pugi::xml_node& parent,
                                         std::initializer_list<std::string_view> names) {
    noticeAttributes(parent);
    std::vector<pugi::xml_node> children;
    for (const pugi::xml_node& node : parent.children()) {
      if (node.type() != pugi::node_element) continue;
      if (std::ranges::find(names, std::string_view(node.name())) != names.end()) {
        children.push_back(node);
      } else {
        noticeElement(node);
      }
    }
    return children;
  }

  /// Reads what all screens have in common out of one part of the skin.
  void readSettings(const pugi::xml_node& part) {
    const std::string_view name = part.name();
    if (name == "output") {
      for (const pugi::xml_node& node : childrenOf(part, {"resolution"})) readResolution(node);
    } else if (name == "colors") {
      for (const pugi::xml_node& node : childrenOf(part, {"color"})) readColour(node);
    } else if (name == "fonts") {
      for (const pugi::xml_node& node : childrenOf(part, {"font"})) readFont(node);
    }
  }

  void readResolution(const pugi::xml_node& node) {
    noticeAttributes(node);
    const Values values = valuesOf(node);
    settings_.width = values.positive("xres").value_or(settings_.width);
    settings_.height = values.positive("yres").value_or(settings_.height);
  }

  void readColour(const pugi::xml_node& node) {
    noticeAttributes(node);
    const Values values = valuesOf(node);
    if (const auto colour = values.colour("value")) {
      settings_.colours.insert_or_assign(values.text("name"), *colour);
    }
  }

  void readFont(const pugi::xml_node& node) {
    noticeAttributes(node);
    const Values values = valuesOf(node);
    settings_.fonts.insert_or_assign(values.text("name"), values.text("filename"));
  }

  Values valuesOf(const pugi::xml_node& node) { return {lines_, node, settings_, notices_}; }

  /// Adds a screen; it is left out, and that is noticed, where its place is not to be understood.
  void addScreen(Skin& skin, const pugi::xml_node& node) {
    try {
      skin.screens.insert_or_assign(node.attribute("name").value(), screenOf(node));
    } catch (const SkinError& error) {
      notices_.add(std::string(error.what()) + kLeftOut);
    }
  }

  SkinScreen screenOf(const pugi::xml_node& node) {
    noticeAttributes(node);
    const Values values = valuesOf(node);
    SkinScreen screen{.area = values.area(settings_.width, settings_.height),
                      .title = values.text("title"),
                      .has_border = values.text("flags").find("wfNoBorder") == std::string::npos,
                      .background = values.colour("backgroundColor")};
    std::vector<std::pair<int, SkinElement>> elements;
    for (const pugi::xml_node& child : node.children()) {
      if (child.type() != pugi::node_element) continue;
      if (auto element = elementOf(child, screen.area)) {
        elements.emplace_back(valuesOf(child).number("zPosition").value_or(0), std::move(*element));
      }
    }
    std::ranges::stable_sort(elements, {}, [](const auto& element) { return element.first; });
    for (auto& [z, element] : elements) screen.elements.push_back(std::move(element));
    return screen;
  }

  /// Reads an element; nothing, and that is noticed, where it or its place is not to be understood.
  std::optional<SkinElement> elementOf(const pugi::xml_node& node, const SkinArea& screen) {
    const auto* kind = std::ranges::find(kKinds, std::string_view(node.name()),
                                         [](const auto& known) { return known.first; });
    if (kind == std::end(kKinds)) {
      noticeElement(node);
      return std::nullopt;
    }
    noticeAttributes(node);
    try {
      return elementIn(valuesOf(node).area(screen.width, screen.height), kind->second, node);
    } catch (const SkinError& error) {
      notices_.add(std::string(error.what()) + kLeftOut);
      return std::nullopt;
    }
  }

  SkinElement elementIn(const SkinArea& area, SkinElement::Kind kind, const pugi::xml_node& node) {
    const Values values = valuesOf(node);
    return {
        .kind = kind,
        .name = values.text(nameOf(node, kind)),
        .area = area,
        .layout = values.layout(),
        .is_transparent = values.flag("transparent"),
        .foreground = values.colour("foregroundColor"),
        .background = values.colour("backgroundColor"),
        .foreground_selected = values.colour("foregroundColorSelected"),
        .background_selected = values.colour("backgroundColorSelected"),
        .scroll_bar = scrollBarOf(values),
        .row_height = values.positive("itemHeight"),
        .rows = rowsOf(node),
    };
  }

  /// Returns the attribute that says what the element shows.
  static const char* nameOf(const pugi::xml_node& node, SkinElement::Kind kind) {
    if (kind == SkinElement::Kind::picture) return "pixmap";
    if (kind == SkinElement::Kind::label) return "text";
    return node.attribute("name") ? "name" : "source";
  }

  static SkinElement::ScrollBar scrollBarOf(const Values& values) {
    const std::string mode = values.text("scrollbarMode");
    for (const auto& [name, scroll_bar] : kScrollBars) {
      if (mode == name) return scroll_bar;
    }
    values.notice("scrollbarMode");
    return SkinElement::ScrollBar::on_demand;
  }

  std::optional<ListTemplate> rowsOf(const pugi::xml_node& widget) {
    std::optional<ListTemplate> rows;
    for (const pugi::xml_node& node : widget.children()) {
      if (node.type() != pugi::node_element) continue;
      const bool is_template =
          std::string_view(node.name()) == "convert" &&
          std::string_view(node.attribute("type").value()) == "TemplatedMultiContent";
      if (is_template) {
        noticeAttributes(node);
        rows = templateOf(node.text().data());
      } else {
        noticeElement(node);
      }
    }
    return rows;
  }

  std::optional<ListTemplate> templateOf(const pugi::xml_node& text) {
    try {
      return parseTemplate(text.value(), notices_);
    } catch (const ExpressionError& error) {
      notices_.add(
          lines_.placed(text.offset_debug() + static_cast<std::ptrdiff_t>(error.offset),
                        std::string("the list's template is not understood: ") + error.what()));
      return std::nullopt;
    }
  }

  void noticeElement(const pugi::xml_node& node) {
    notices_.add(std::string("the element \"") + node.name() + "\" is not understood");
  }

  void noticeAttributes(const pugi::xml_node& node) {
    const auto* known = std::ranges::find(kKnown, std::string_view(node.name()), &Known::element);
    std::istringstream words(known->attributes);
    const std::vector<std::string> names{std::istream_iterator<std::string>(words), {}};
    for (const pugi::xml_attribute& attribute : node.attributes()) {
      if (std::ranges::find(names, attribute.name()) != names.end()) continue;
      notices_.add(std::string("the attribute \"") + attribute.name() + "\" of the element \"" +
                   node.name() + "\" is not understood");
    }
  }

  Lines lines_;
  SkinSettings settings_;
  Notices& notices_;
  pugi::xml_document document_;
};

}  // namespace

Skin parseSkin(std::string_view xml, Notices& notices) {
  return Reader(xml, {}, notices).readSkin();
}

SkinScreen parseScreen(std::string_view xml, const SkinSettings& settings, Notices& notices) {
  return Reader(xml, settings, notices).readScreen();
}

}  // namespace desk
