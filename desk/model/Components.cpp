#include "desk/model/Components.h"

#include <utility>

#include "desk/model/KeyMap.h"
#include "host/native/ShownText.h"

namespace desk {
namespace {

/// Returns the path of the picture in a row's tuple, "" for none.
std::string pictureOf(const host::Value::List& items) {
  const host::ObjectRef picture = items.size() > 3 ? items[3].object() : nullptr;
  return picture ? native::shownText(picture->str()) : "";
}

}  // namespace

void List::setList(const host::Value::List& entries) {
  entries_ = entries;
  std::vector<Row> rows;
  for (const host::Value& entry : entries_) {
    const host::Value::List& items = *entry.list();
    rows.push_back({.text = native::shownText(items.at(1).str()),
                    .description = native::shownText(items.at(2).str()),
                    .picture = pictureOf(items)});
  }
  setRows(std::move(rows));
}

host::Value List::getCurrent() {
  if (entries_.empty()) return {};
  return entries_[static_cast<std::size_t>(selected())];
}

void MenuList::setList(const std::vector<std::string>& rows) {
  names_ = rows;
  std::vector<Row> shown;
  for (const std::string& name : names_) shown.push_back({native::shownText(name)});
  setRows(std::move(shown));
}

host::Value MenuList::getCurrent() {
  if (names_.empty()) return {};
  return names_[static_cast<std::size_t>(selected())];
}

bool ActionMap::handleKey(const std::string& key) const {
  for (const std::string& context : mapping.contexts) {
    const auto action = actionOf(context, key);
    if (!action) continue;
    for (const host::ActionBinding& binding : mapping.bindings) {
      if (binding.action != *action) continue;
      binding.handler.call();
      return true;
    }
  }
  return false;
}

}  // namespace desk
