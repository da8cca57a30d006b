#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "host/plain/Node.h"

namespace plain {

/// A text source or a label.
struct TextWidget : Node {
  explicit TextWidget(Object text_) : text(std::move(text_)) {}
  std::string className() const override { return "TextWidget"; }
  Object get(std::string_view name) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  Object text;
};

/// A list with a cursor, which stays within it: "List" and "MenuList".
struct ListWidget : Node {
  explicit ListWidget(Object rows_) : rows(std::move(rows_)) {}
  std::string className() const override { return "ListWidget"; }
  Object get(std::string_view name) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  /// Replaces the rows.
  virtual void setList(const Object& new_rows) { rows = new_rows; }

  /// Returns the row under the cursor, nothing when there are none.
  Object current() const;

  Object rows;
  std::size_t cursor = 0;
};

/// A map of keys: "ActionMap" and "NumberActionMap".
struct ActionMap : Node {
  explicit ActionMap(Arguments arguments);
  std::string className() const override { return "ActionMap"; }

  /// Calls what the map binds to `action`. Returns whether it binds anything.
  bool press(const std::string& action) const;

  Object contexts;
  Object actions;
  int priority;
};

/// The package manager's component.
struct IpkgComponent : Node {
  /// Starts a command. Who listens is told of its end by its event (a Constant) and a parameter.
  using Start = std::function<void(IpkgComponent& component, const Object& command)>;
  explicit IpkgComponent(Start start_) : start(std::move(start_)) {}
  std::string className() const override { return "IpkgComponent"; }
  Object get(std::string_view name) override;
  Object invoke(std::string_view name, Arguments arguments) override;

  const Start start;
  const std::shared_ptr<std::vector<Object>> callbacks = std::make_shared<std::vector<Object>>();
};

}  // namespace plain
