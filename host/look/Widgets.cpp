#include "host/look/Widgets.h"

#include <algorithm>

#include "host/include/Error.h"

namespace look {

host::Value MenuList::getCurrent() {
  return cursor_ < rows_.size() ? host::Value(rows_[cursor_]) : host::Value();
}

bool ActionMap::call(std::string_view action) const {
  const auto bound = std::ranges::find(mapping_.bindings, action, &host::ActionBinding::action);
  if (bound == mapping_.bindings.end()) return false;
  bound->handler.call();
  return true;
}

void Peer::setItem(std::string_view key, const host::ComponentPtr& component) {
  items_.insert_or_assign(std::string(key), component);
}

template <class Widget>
std::shared_ptr<Widget> Peer::widget(std::string_view key) const {
  const auto item = items_.find(key);
  if (item == items_.end()) throw host::Error("KeyError", std::string(key));
  auto found = std::dynamic_pointer_cast<Widget>(item->second);
  if (!found) throw host::Error("TypeError", std::string(key));
  return found;
}

std::shared_ptr<host::Label> Peer::label(std::string_view key) {
  return widget<host::Label>(key);
}

std::shared_ptr<host::List> Peer::list(std::string_view key) {
  return widget<host::List>(key);
}

std::shared_ptr<host::MenuList> Peer::menuList(std::string_view key) {
  return widget<host::MenuList>(key);
}

void Peer::callOperation(std::string_view name, const host::Value& /*argument*/) {
  throw host::Error("AttributeError", std::string(name));
}

void Peer::press(std::string_view action) {
  for (const auto& [key, item] : items_) {
    const auto map = std::dynamic_pointer_cast<const ActionMap>(item);
    if (map && map->call(action)) return;
  }
}

}  // namespace look
