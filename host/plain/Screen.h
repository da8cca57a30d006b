#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/plain/Widgets.h"

namespace plain {

/// The framework's side of a screen: its widgets, its layout and its end.
struct Screen : Instance {
  explicit Screen(std::string class_name);
  Object get(std::string_view name) override;
  Object invoke(std::string_view name, Arguments arguments) override;
  Object item(const Object& key) override;
  void setItem(const Object& key, const Object& value) override;

  /// Calls what the screen has registered for the end of its layout.
  void finishLayout();

  /// Ends the screen as the framework does: all of its attributes and widgets go.
  void clear() override;

  std::map<std::string, Object> widgets;
  std::optional<Object> result;  ///< what it was closed with
};

/// A screen of the module that is open, until it goes out of scope.
class OpenScreen {
 public:
  /// Takes it over as its class has made it.
  explicit OpenScreen(Object made) : object_(std::move(made)) {}
  ~OpenScreen();
  OpenScreen(const OpenScreen&) = delete;
  OpenScreen& operator=(const OpenScreen&) = delete;

  const Object& object() const { return object_; }
  Screen& screen() const { return *as<Screen>(object_); }

  /// Returns a widget of the screen. Raises Error ("KeyError", "TypeError") when it has none of
  /// that kind.
  template <class Widget>
  Widget& widget(std::string_view key) const {
    auto* const found = as<Widget>(object_.item(key));
    if (!found) throw Error("TypeError", "'" + std::string(key) + "' is a widget of another kind");
    return *found;
  }

  /// Presses the key of `action`: the first map that binds it calls what it is bound to. Returns
  /// whether one does.
  bool press(const std::string& action) const;

 private:
  Object object_;
};

}  // namespace plain
