#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "desk/model/Dialogs.h"
#include "host/plain/Screen.h"

namespace desk {

/// What a test does with a screen when it is made.
using SetUpScreen = std::function<void(const host::Object& screen)>;

/// What actions call.
using Handlers = std::map<std::string, std::function<void()>>;

inline host::Object action(std::function<void()> call) {
  return plain::function(
      [call = std::move(call)](host::Arguments) { return call(), host::Object(); });
}

/// Adds an action map for the actions of `handlers` in `context`.
inline void addMap(const host::Object& screen, const std::string& key, const std::string& context,
                   const Handlers& handlers, int priority = 0) {
  const host::Object actions = host::dictionary({});
  for (const auto& [name, call] : handlers) actions.setItem(name, action(call));
  screen.setItem(key, plain::make<plain::ActionMap>(
                          host::Arguments{host::list({context}), actions, priority}));
}

/// Returns a screen that `setup` sets up.
inline ModuleScreen testScreen(const SetUpScreen& setup) {
  const auto makeScreen = [setup](host::Arguments) {
    host::Object screen = plain::make<plain::Screen>("TestScreen");
    setup(screen);
    return screen;
  };
  return {.name = "TestScreen", .type = plain::make<plain::Type>("TestScreen", makeScreen)};
}

}  // namespace desk
