#include "host/plain/Screen.h"

namespace plain {

Screen::Screen(std::string class_name) : Instance(std::move(class_name)) {
  attributes.emplace("onLayoutFinish", host::list());
}

Object Screen::get(std::string_view name) {
  return name == "close" ? bound(name) : Instance::get(name);
}

Object Screen::invoke(std::string_view name, Arguments arguments) {
  if (name != "close") return Instance::invoke(name, arguments);
  if (!result) result = argument(arguments, 0);
  return {};
}

Object Screen::item(const Object& key) {
  const auto found = widgets.find(textOf(key));
  if (found == widgets.end()) throw Error("KeyError", "'" + textOf(key) + "'");
  return found->second;
}

void Screen::setItem(const Object& key, const Object& value) {
  widgets.insert_or_assign(textOf(key), value);
}

void Screen::finishLayout() {
  const std::vector<Object> hooks = itemsOf(attributes.at("onLayoutFinish"));
  for (const Object& hook : hooks) hook();
}

void Screen::clear() {
  const auto going = std::move(widgets);
  Instance::clear();
}

OpenScreen::~OpenScreen() {
  screen().clear();
}

bool OpenScreen::press(const std::string& action) const {
  for (const auto& [key, widget] : std::map(screen().widgets)) {
    const auto* const map = as<ActionMap>(widget);
    if (map && map->press(action)) return true;
  }
  return false;
}

}  // namespace plain
