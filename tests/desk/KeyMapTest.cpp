#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "desk/model/KeyMap.h"

namespace desk {
namespace {

constexpr const char* kKeys[] = {"up",    "down",   "left", "right", "ok", "exit", "red",
                                 "green", "yellow", "blue", "0",     "1",  "2",    "3",
                                 "4",     "5",      "6",    "7",     "8",  "9"};

/// A context and what it calls the keys that it knows, by the key.
struct Context {
  const char* name;
  struct {
    const char* key;
    const char* action;
  } known[4];
};

constexpr Context kContexts[] = {
    {"OkCancelActions", {{"ok", "ok"}, {"exit", "cancel"}}},
    {"SetupActions", {{"ok", "ok"}, {"exit", "cancel"}}},
    {"ColorActions", {{"red", "red"}, {"green", "green"}, {"yellow", "yellow"}, {"blue", "blue"}}},
    {"ShortcutActions",
     {{"red", "red"}, {"green", "green"}, {"yellow", "yellow"}, {"blue", "blue"}}},
    {"DirectionActions", {{"up", "up"}, {"down", "down"}, {"left", "left"}, {"right", "right"}}},
    {"NoSuchActions", {}},
};

std::string expectedAction(const Context& context, const std::string& key) {
  for (const auto& known : context.known) {
    if (known.key && key == known.key) return known.action;
  }
  return "nothing";
}

TEST(KeyMap, EveryContextNamesItsKeysAndNoOther) {
  for (const Context& context : kContexts) {
    for (const char* key : kKeys) {
      EXPECT_EQ(actionOf(context.name, key).value_or("nothing"), expectedAction(context, key))
          << context.name << " " << key;
    }
    EXPECT_EQ(actionOf(context.name, ""), std::nullopt);
    EXPECT_EQ(actionOf(context.name, "cancel"), std::nullopt);
  }
}

}  // namespace
}  // namespace desk
