#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/include/Method.h"
#include "host/include/Overrides.h"
#include "host/include/Session.h"
#include "host/include/Widgets.h"

namespace host {

class Host;

/// The framework's side of one screen. It outlives the screen. Every operation raises what the
/// framework raises. Where an operation of a screen calls another of them, it asks for an override
/// first.
class ScreenPeer : public Overrides {
 public:
  /// Initialises the framework's base screen with `session`, and sets its attribute "session".
  virtual void init(Session& session) = 0;

  /// Puts `component` into the widget table under `key`, in place of any former one.
  virtual void setItem(std::string_view key, const ComponentPtr& component) = 0;

  /// Return the component under `key` in the widget table. Raise Error ("KeyError", "TypeError")
  /// when there is none or one of another kind.
  virtual std::shared_ptr<Label> label(std::string_view key) = 0;
  virtual std::shared_ptr<List> list(std::string_view key) = 0;
  virtual std::shared_ptr<MenuList> menuList(std::string_view key) = 0;

  /// Sets an attribute that the framework itself reads: "title" or "skin_path".
  virtual void setAttribute(std::string_view name, const std::string& value) = 0;

  /// Returns what such an attribute is now, which is `value` where nobody else sets it. Raises
  /// Error ("TypeError") when it is no text.
  virtual std::string attribute(std::string_view /*name*/, const std::string& value) {
    return value;
  }

  /// Calls `hook` once, when the layout is complete.
  virtual void appendOnLayoutFinish(const Action& hook) = 0;

  /// Closes the screen; a callback given at its opening receives `result`.
  virtual void close(const Value& result) = 0;

  /// Calls the screen's operation `name`, one that the module does not define, with `argument`.
  /// Raises Error ("AttributeError") when nobody has defined it.
  virtual void callOperation(std::string_view name, const Value& argument) = 0;
};

/// The base of the module's screens: what each needs to live in its host.
/// A screen stays where it was made, for its operations are handed to the framework. The body of
/// its constructor begins with peer.init(): from then on the framework may look at its members.
class Screen {
 public:
  Screen(Host& host, ScreenPeer& peer, Session& session)
      : session(&session), host_(host), peer_(peer) {}
  virtual ~Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  /// The framework's side of this screen; a host that is handed a Method finds its own object
  /// there.
  ScreenPeer& peer() const { return peer_; }

  /// The GUI session that opened the screen.
  Session* session;

 protected:
  Host& host() const { return host_; }

 private:
  Host& host_;
  ScreenPeer& peer_;
};

}  // namespace host
