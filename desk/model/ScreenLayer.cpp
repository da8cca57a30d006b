#include "desk/model/ScreenLayer.h"

#include <algorithm>
#include <vector>

#include "base/Escape.h"
#include "desk/model/Components.h"
#include "desk/model/KeyMap.h"

namespace desk {
namespace {

using host::operator""_t;

/// Calls the class. The module's screens take two arguments at most, besides the session.
host::Object madeOf(const ModuleScreen& screen, const host::Object& session) {
  const std::vector<host::Object>& given = screen.arguments;
  if (given.empty()) return screen.type({session});
  if (given.size() == 1) return screen.type({session, given[0]});
  return screen.type({session, given[0], given.at(1)});
}

/// Calls what the map binds to `key`. Returns whether it binds anything.
bool handle(const plain::ActionMap& map, const std::string& key) {
  for (const std::string& context : plain::textsOf(map.contexts)) {
    const auto action = actionOf(context, key);
    if (action && map.press(std::string(*action))) return true;
  }
  return false;
}

}  // namespace

ScreenLayer::ScreenLayer(const ModuleScreen& screen, const host::Object& session)
    : Layer(screen.name), screen_(madeOf(screen, session)) {
  const auto* const type = plain::as<plain::ClassObject>(screen.type);
  if (type && type->type.skin) skin_ = type->type.skin;
}

std::string ScreenLayer::title() const {
  const auto& attributes = screen_.screen().attributes;
  const auto found = attributes.find("title");
  return found == attributes.end() ? "" : plain::textOf(found->second);
}

void ScreenLayer::setTitle(const std::string& title) {
  screen_.object()["title"_t] = title;
}

void ScreenLayer::handleKey(const std::string& key) {
  std::vector<host::Object> maps;
  for (const auto& [name, widget] : screen_.screen().widgets) {
    if (plain::as<plain::ActionMap>(widget)) maps.push_back(widget);
  }
  std::ranges::stable_sort(
      maps, {}, [](const auto& map) { return plain::as<plain::ActionMap>(map)->priority; });
  for (const host::Object& map : maps) {
    if (handle(*plain::as<plain::ActionMap>(map), key)) return;
  }
  if (RowList* list = rowList()) list->handleKey(key);
}

RowList* ScreenLayer::rowList() {
  for (const auto& [name, widget] : screen_.screen().widgets) {
    if (auto* const list = plain::as<ListWidget>(widget)) return list;
  }
  return nullptr;
}

Content ScreenLayer::content() const {
  ScreenContent content{.skin = skin_};
  for (const auto& [name, widget] : screen_.screen().widgets) {
    if (const auto* const text = plain::as<plain::TextWidget>(widget)) {
      content.texts[name] = base::escapeInvalidUtf8(plain::textOf(text->text));
    } else if (plain::as<ListWidget>(widget)) {
      content.list = name;
    }
  }
  return content;
}

}  // namespace desk
