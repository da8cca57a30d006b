#include "desk/model/KeyMap.h"

#include <algorithm>
#include <iterator>

namespace desk {
namespace {

struct KeyBinding {
  std::string_view context;
  std::string_view key;
  std::string_view action;
};

constexpr KeyBinding kKeyMap[] = {
    {"OkCancelActions", "ok", "ok"},
    {"OkCancelActions", "exit", "cancel"},
    {"SetupActions", "ok", "ok"},
    {"SetupActions", "exit", "cancel"},
    {"ColorActions", "red", "red"},
    {"ColorActions", "green", "green"},
    {"ColorActions", "yellow", "yellow"},
    {"ColorActions", "blue", "blue"},
    {"ShortcutActions", "red", "red"},
    {"ShortcutActions", "green", "green"},
    {"ShortcutActions", "yellow", "yellow"},
    {"ShortcutActions", "blue", "blue"},
    {"DirectionActions", "up", "up"},
    {"DirectionActions", "down", "down"},
    {"DirectionActions", "left", "left"},
    {"DirectionActions", "right", "right"},
};

}  // namespace

std::optional<std::string_view> actionOf(const std::string& context, const std::string& key) {
  const auto* found = std::ranges::find_if(kKeyMap, [&](const KeyBinding& binding) {
    return binding.context == context && binding.key == key;
  });
  if (found == std::end(kKeyMap)) return std::nullopt;
  return found->action;
}

}  // namespace desk
