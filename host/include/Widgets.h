#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Method.h"
#include "host/include/Value.h"

namespace host {

/// Anything that a screen holds in its widget table.
class Component {
 public:
  virtual ~Component() = default;

  /// Returns the framework's own object, for the host that made this component; null where a
  /// component is all that there is.
  virtual void* native_handle() const { return nullptr; }
};

/// A text source.
class StaticText : public Component {
 public:
  virtual void setText(const std::string& text) = 0;
};

/// A text widget.
class Label : public Component {
 public:
  virtual void setText(const std::string& text) = 0;
};

/// A list source with a cursor. An entry is a tuple; the skin says which of its items are drawn.
class List : public Component {
 public:
  virtual void setList(const Value::List& entries) = 0;

  /// Returns the entry under the cursor, nothing when the list is empty.
  virtual Value getCurrent() = 0;
};

/// A list widget with a cursor and one text a row.
class MenuList : public Component {
 public:
  /// Replaces the rows (the framework's `l.setList`).
  virtual void setList(const std::vector<std::string>& rows) = 0;

  /// Returns the text under the cursor, nothing when the list is empty.
  virtual Value getCurrent() = 0;
};

/// One key of an action map: the action's name in the map's contexts, and what it calls.
struct ActionBinding {
  std::string_view action;
  Action handler;
};

/// What an action map is made of. Maps of a lower priority are asked first; 0 is
/// the framework's own default, which a host does not pass on.
struct ActionMapping {
  std::vector<std::string> contexts;
  std::vector<ActionBinding> bindings;
  int priority = 0;
};

/// A component that turns key presses into calls while its screen is on top.
class ActionMap : public Component {};

using ComponentPtr = std::shared_ptr<Component>;

}  // namespace host
