#include "host/plain/Session.h"

namespace plain {

Object Dialog::keyword(std::string_view keyword) const {
  const auto found = keywords.find(keyword);
  return found == keywords.end() ? Object() : found->second;
}

Object Session::invoke(std::string_view name, Arguments arguments) {
  const bool has_callback = name == "openWithCallback";
  if (!has_callback && name != "open") return Node::get(name);
  Dialog dialog;
  std::vector<Object> positional;
  for (const Argument& each : arguments) {
    if (each.keyword) {
      dialog.keywords.emplace(each.keyword->characters(), each.value);
    } else {
      positional.push_back(each.value);
    }
  }
  if (positional.size() < (has_callback ? 2U : 1U)) {
    throw Error("TypeError", std::string(name) + "() is called without its screen");
  }
  auto next = positional.begin();
  if (has_callback) dialog.callback = *next++;
  dialog.type = *next++;
  dialog.name = nodeOf(dialog.type).str();
  dialog.arguments.assign(next, positional.end());
  return open(std::move(dialog));
}

}  // namespace plain
