#include "ScreenLayer.h"

#include <algorithm>

#include "Components.h"
#include "ShownText.h"
#include "host/Error.h"

namespace desk {

ScreenLayer::ScreenLayer(const host::ScreenClass& screen_class, host::Session& session)
    : Layer(screen_class.name), screen_(screen_class.create(*this, session)) {}

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
      frame["widgets"][name] = shownText(text->shown);
    }
  }
}

void ScreenLayer::init(host::Session& /*session*/) {
  // The base screen of the stand-in is this layer itself.
}

void ScreenLayer::setItem(const std::string& key, const host::ComponentPtr& component) {
  widgets_[key] = component;
}

void ScreenLayer::setAttribute(const std::string& name, const std::string& value) {
  if (name == "title") shown_title = value;
}

void ScreenLayer::appendOnLayoutFinish(const host::Action& hook) {
  on_layout_finish_.push_back(hook);
}

void ScreenLayer::callOperation(const std::string& name, const host::Value& /*argument*/) {
  throw host::Error("AttributeError",
                    "'" + className() + "' object has no attribute '" + name + "'");
}

}  // namespace desk
