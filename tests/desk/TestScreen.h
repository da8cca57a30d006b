#pragma once

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "host/include/Dialogs.h"
#include "host/include/Host.h"
#include "host/include/Screen.h"

namespace desk {

/// A screen that a test sets up.
class TestScreen : public host::Screen {
 public:
  using Setup = std::function<void(TestScreen&)>;
  using Handlers = std::map<std::string, std::function<void()>>;

  TestScreen(host::Host& host, host::ScreenPeer& peer, host::Session& session, const Setup& setup)
      : Screen(host, peer, session) {
    peer.init(session);
    setup(*this);
  }

  using Screen::host;
  using Screen::peer;

  host::Action action(std::function<void()> call) { return {this, "action", std::move(call)}; }

  /// Adds an action map for the actions of `handlers` in `context`.
  void bind(const std::string& key, const std::string& context, const Handlers& handlers,
            int priority = 0) {
    host::ActionMapping mapping{.contexts = {context}, .bindings = {}, .priority = priority};
    for (const auto& [name, call] : handlers) {
      mapping.bindings.push_back({*actions_.insert(actions_.end(), name), action(call)});
    }
    peer().setItem(key, host().components().makeActionMap(mapping));
  }

 private:
  std::list<std::string> actions_;  ///< keeps the names that the bindings point to
};

/// Returns the screen class `name` whose instances `setup` sets up.
inline host::ScreenClass screenClass(const std::string& name, host::Host& host,
                                     const TestScreen::Setup& setup) {
  return {.name = name,
          .arguments = {},
          .create = [&host, setup](host::ScreenPeer& peer, host::Session& session) {
            return std::make_unique<TestScreen>(host, peer, session, setup);
          }};
}

}  // namespace desk
