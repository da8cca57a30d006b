#include "Skin.h"

#include <algorithm>
#include <array>
#include <pugixml.hpp>
#include <sstream>
#include <utility>

#include "Expression.h"
#include "Values.h"

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

/// Reads the layouts of screens out of one text.
class Reader {
 public:
  Reader(std::string_view xml, SkinSettings settings, Notices& notices)
      : xml_(xml), settings_(std::move(settings)), notices_(notices) {
    const pugi::xml_parse_result parsed = document_.load_buffer(xml.data(), xml.size());
    if (!parsed) refuseAt(xml, parsed.offset, parsed.description());
  }

  SkinScreen readScreen() {
    const pugi::xml_node node = document_.child("screen");
    if (!node) throw SkinError("there is no element \"screen\"");
    return screenOf(node);
  }

  Skin readSkin() {
    const pugi::xml_node skin = document_.child("skin");
    if (!skin) throw SkinError("there is no element \"skin\"");
    readSettings(skin);
    Skin result;
    for (const pugi::xml_node& node : skin.children()) {
      const std::string_view name = node.name();
      if (name == "screen") {
        result.screens.insert_or_assign(node.attribute("name").value(), screenOf(node));
      } else if (node.type() == pugi::node_element && name != "output" && name != "colors" &&
                 name != "fonts") {
        noticeElement(node);
      }
    }
    result.settings = std::move(settings_);
    return result;
  }

 private:
  void readSettings(const pugi::xml_node& skin) {
    if (const pugi::xml_node node = skin.child("output").child("resolution")) {
      const Values values(xml_, node, settings_);
      settings_.width = sizeOf(values, "xres", settings_.width);
      settings_.height = sizeOf(values, "yres", settings_.height);
    }
    for (const pugi::xml_node& node : skin.child("colors").children("color")) {
      const Values values(xml_, node, settings_);
      const auto colour = values.colour("value");
      if (!colour) values.refuse("value");
      settings_.colours.insert_or_assign(values.text("name"), *colour);
    }
    for (const pugi::xml_node& node : skin.child("fonts").children("font")) {
      const Values values(xml_, node, settings_);
      settings_.fonts.insert_or_assign(values.text("name"), values.text("filename"));
    }
  }

  static int sizeOf(const Values& values, const char* name, int usual) {
    const int size = values.number(name, usual);
    if (size <= 0) values.refuse(name);
    return size;
  }

  SkinScreen screenOf(const pugi::xml_node& node) {
    noticeAttributes(node);
    const Values values(xml_, node, settings_);
    SkinScreen screen{.area = values.area(settings_.width, settings_.height),
                      .title = values.text("title"),
                      .has_border = values.text("flags").find("wfNoBorder") == std::string::npos,
                      .background = values.colour("backgroundColor")};
    std::vector<std::pair<int, SkinElement>> elements;
    for (const pugi::xml_node& child : node.children()) {
      if (child.type() != pugi::node_element) continue;
      if (auto element = elementOf(child, screen.area)) {
        const int z = Values(xml_, child, settings_).number("zPosition", 0);
        elements.emplace_back(z, std::move(*element));
      }
    }
    std::ranges::stable_sort(elements, {}, [](const auto& element) { return element.first; });
    for (auto& [z, element] : elements) screen.elements.push_back(std::move(element));
    return screen;
  }

  std::optional<SkinElement> elementOf(const pugi::xml_node& node, const SkinArea& screen) {
    const auto* kind = std::ranges::find(kKinds, std::string_view(node.name()),
                                         [](const auto& known) { return known.first; });
    if (kind == std::end(kKinds)) {
      noticeElement(node);
      return std::nullopt;
    }
    noticeAttributes(node);
    const Values values(xml_, node, settings_);
    return SkinElement{
        .kind = kind->second,
        .name = values.text(nameOf(node, kind->second)),
        .area = values.area(screen.width, screen.height),
        .layout = values.layout(),
        .is_transparent = values.flag("transparent"),
        .foreground = values.colour("foregroundColor"),
        .background = values.colour("backgroundColor"),
        .foreground_selected = values.colour("foregroundColorSelected"),
        .background_selected = values.colour("backgroundColorSelected"),
        .scroll_bar = scrollBarOf(values),
        .row_height = rowHeightOf(node, values),
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
    values.refuse("scrollbarMode");
  }

  static std::optional<int> rowHeightOf(const pugi::xml_node& node, const Values& values) {
    if (!node.attribute("itemHeight")) return std::nullopt;
    return sizeOf(values, "itemHeight", 0);
  }

  std::optional<ListTemplate> rowsOf(const pugi::xml_node& widget) {
    for (const pugi::xml_node& node : widget.children()) {
      if (node.type() != pugi::node_element) continue;
      if (std::string_view(node.attribute("type").value()) != "TemplatedMultiContent") {
        noticeElement(node);
        continue;
      }
      noticeAttributes(node);
      return templateOf(node.first_child());
    }
    return std::nullopt;
  }

  ListTemplate templateOf(const pugi::xml_node& text) {
    try {
      return parseTemplate(text.value(), notices_);
    } catch (const ExpressionError& error) {
      refuseAt(xml_, text.offset_debug() + static_cast<std::ptrdiff_t>(error.offset),
               std::string("the list's template is not understood: ") + error.what());
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

  std::string_view xml_;
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
