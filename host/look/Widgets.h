#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/include/IpkgComponent.h"
#include "host/include/Screen.h"
#include "host/include/Widgets.h"

namespace look {

/// A list whose cursor can be put anywhere.
class MenuList : public host::MenuList {
 public:
  void setList(const std::vector<std::string>& rows) override { rows_ = rows; }
  host::Value getCurrent() override;
  const std::vector<std::string>& rows() const { return rows_; }

  /// Puts the cursor onto a row, the first being 0.
  void select(std::size_t row) { cursor_ = row; }

 private:
  std::vector<std::string> rows_;
  std::size_t cursor_ = 0;
};

class ActionMap : public host::ActionMap {
 public:
  explicit ActionMap(host::ActionMapping mapping) : mapping_(std::move(mapping)) {}

  /// Calls what the map binds to `action`. Returns whether it binds anything.
  bool call(std::string_view action) const;

 private:
  host::ActionMapping mapping_;
};

/// A package manager that takes note of what it is asked for.
class IpkgComponent : public host::IpkgComponent {
 public:
  explicit IpkgComponent(std::function<void()> note) : note_(std::move(note)) {}
  void addCallback(const host::IpkgCallback& /*callback*/) override {}
  void startCmd(host::IpkgCommand /*command*/) override { note_(); }

 private:
  std::function<void()> note_;
};

/// The framework's side of a screen that nobody sees.
class Peer : public host::ScreenPeer {
 public:
  void init(host::Session& /*session*/) override {}
  void setItem(std::string_view key, const host::ComponentPtr& component) override;
  std::shared_ptr<host::Label> label(std::string_view key) override;
  std::shared_ptr<host::List> list(std::string_view key) override;
  std::shared_ptr<host::MenuList> menuList(std::string_view key) override;
  void setAttribute(std::string_view /*name*/, const std::string& /*value*/) override {}
  void appendOnLayoutFinish(const host::Action& /*hook*/) override {}
  void close(const host::Value& /*result*/) override {}
  void callOperation(std::string_view name, const host::Value& argument) override;

  /// Presses the key of `action`: what its maps bind to it is called.
  void press(std::string_view action);

 private:
  template <class Widget>
  std::shared_ptr<Widget> widget(std::string_view key) const;

  std::map<std::string, host::ComponentPtr, std::less<>> items_;
};

}  // namespace look
