#include "desk/model/ScreenLayer.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "desk/model/Components.h"
#include "host/include/Error.h"
#include "host/native/ShownText.h"

namespace desk {

ScreenLayer::ScreenLayer(const host::ScreenClass& screen_class, host::Session& session)
    : Layer(screen_class.name),
      skin_(screen_class.skin),
      screen_(screen_class.create(*this, session)) {}

ScreenLayer::~ScreenLayer() = default;

void ScreenLayer::finishLayout() {
  for (const host::Action& hook : on_layout_finish_) hook.call();
}

void ScreenLayer::handleKey(const std::string& key) {
  std::vector<const ActionMap*> maps;
  for (const auto& [name, widget] : widgets_) {
    if (const auto* map = dynamic_cast<const ActionMap*>(widget.get())) maps.push_back(map);
  }
  std::ranges::stable_sort(maps, {}, [](const ActionMap* map) { return map->mapping.priority; });
  for (const ActionMap* map : maps) {
    if (map->handleKey(key)) return;
  }
  if (RowList* list = rowList()) list->handleKey(key);
}

RowList* ScreenLayer::rowList() {
  for (const auto& [name, widget] : widgets_) {
    if (auto* list = dynamic_cast<RowList*>(widget.get())) return list;
  }
  return nullptr;
}

void ScreenLayer::addTo(Json& frame) const {
  for (const auto& [name, widget] : widgets_) {
    if (const auto* text = dynamic_cast<const TextWidget*>(widget.get())) {
      frame["widgets"][name] = native::shownText(text->shown);
    } else if (dynamic_cast<const RowList*>(widget.get())) {
      frame["list"] = name;
    }
  }
  if (!skin_.empty()) frame["skin"] = skin_;
}

void ScreenLayer::init(host::Session& /*session*/) {
  // The base screen of the stand-in is this layer itself.
}

void ScreenLayer::setItem(std::string_view key, const host::ComponentPtr& component) {
  widgets_[std::string(key)] = component;
}

template <class Widget>
std::shared_ptr<Widget> ScreenLayer::widget(std::string_view wanted) const {
  const std::string key(wanted);
  const auto found = widgets_.find(key);
  if (found == widgets_.end()) throw host::Error("KeyError", "'" + key + "'");
  auto widget = std::dynamic_pointer_cast<Widget>(found->second);
  if (!widget) throw host::Error("TypeError", "'" + key + "' is a widget of another kind");
  return widget;
}

std::shared_ptr<host::Label> ScreenLayer::label(std::string_view key) {
  return widget<host::Label>(key);
}

std::shared_ptr<host::List> ScreenLayer::list(std::string_view key) {
  return widget<host::List>(key);
}

std::shared_ptr<host::MenuList> ScreenLayer::menuList(std::string_view key) {
  return widget<host::MenuList>(key);
}

void ScreenLayer::setAttribute(std::string_view name, const std::string& value) {
  if (name == "title") shown_title = value;
}

void ScreenLayer::appendOnLayoutFinish(const host::Action& hook) {
  on_layout_finish_.push_back(hook);
}

void ScreenLayer::callOperation(std::string_view name, const host::Value& /*argument*/) {
  throw host::Error("AttributeError",
                    "'" + className() + "' object has no attribute '" + std::string(name) + "'");
}

}  // namespace desk
