#include "host/plain/Widgets.h"

namespace plain {

Object TextWidget::get(std::string_view name) {
  return name == "setText" ? bound(name) : Node::get(name);
}

Object TextWidget::invoke(std::string_view name, Arguments arguments) {
  if (name != "setText") return Node::invoke(name, arguments);
  text = argument(arguments, 0);
  return {};
}

/// The rows of a "MenuList" are those of its attribute "l".
Object ListWidget::get(std::string_view name) {
  if (name != "l") return Node::get(name);
  ++references;
  return Object::steal(static_cast<Node*>(this));
}

Object ListWidget::invoke(std::string_view name, Arguments arguments) {
  if (name == "getCurrent") return current();
  if (name != "setList") return Node::invoke(name, arguments);
  setList(argument(arguments, 0));
  return {};
}

Object ListWidget::current() const {
  const std::vector<Object>& items = itemsOf(rows);
  return cursor < items.size() ? items[cursor] : Object();
}

ActionMap::ActionMap(Arguments arguments)
    : contexts(argument(arguments, 0)), actions(argument(arguments, 1)), priority(0) {
  if (const auto* given = as<Number>(argument(arguments, 2)))
    priority = static_cast<int>(given->number);
}

bool ActionMap::press(const std::string& action) const {
  const auto& bindings = as<Dictionary>(actions)->items;
  const auto found = bindings.find(action);
  if (found == bindings.end()) return false;
  const Object handler = found->second;
  handler();
  return true;
}

Object IpkgComponent::get(std::string_view name) {
  return name == "startCmd" ? bound(name) : Node::get(name);
}

Object IpkgComponent::invoke(std::string_view name, Arguments arguments) {
  if (name == "addCallback") {
    callbacks->push_back(argument(arguments, 0));
  } else if (name == "startCmd") {
    start(*this, argument(arguments, 0));
  } else {
    return Node::invoke(name, arguments);
  }
  return {};
}

}  // namespace plain
