#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Screen.h"
#include "tests/support/RecordingComponents.h"

namespace support {

/// The framework's side of one screen, through which a test sees the widgets and presses the keys.
class RecordingPeer : public host::ScreenPeer {
 public:
  explicit RecordingPeer(Journal& journal) : journal_(journal) {}

  /// The operations that somebody has defined on the screen beside the module's own.
  std::set<std::string> operations;

  /// The close result, once the screen was closed.
  std::optional<host::Value> closed;

  /// Returns the widget `key`; raises std::out_of_range or std::bad_cast when it is not so.
  template <class Widget>
  Widget& widget(const std::string& key) const {
    return dynamic_cast<Widget&>(*items_.at(key));
  }

  /// Returns the text that the widget `key` shows.
  std::string text(const std::string& key) const;

  /// Calls what an action map binds to `action`; raises std::out_of_range when none does.
  void press(const std::string& action);

  /// Calls the layout-finish hooks, each once.
  void finishLayout();

  void init(host::Session& session) override;
  void setItem(std::string_view key, const host::ComponentPtr& component) override;
  std::shared_ptr<host::Label> label(std::string_view key) override {
    return shared<host::Label>(key);
  }
  std::shared_ptr<host::List> list(std::string_view key) override {
    return shared<host::List>(key);
  }
  std::shared_ptr<host::MenuList> menuList(std::string_view key) override {
    return shared<host::MenuList>(key);
  }
  void setAttribute(std::string_view name, const std::string& value) override;
  void appendOnLayoutFinish(const host::Action& hook) override;
  void close(const host::Value& result) override;
  void callOperation(std::string_view name, const host::Value& argument) override;

 private:
  template <class Widget>
  std::shared_ptr<Widget> shared(std::string_view key) const {
    return std::dynamic_pointer_cast<Widget>(items_.at(std::string(key)));
  }

  Journal& journal_;
  std::map<std::string, host::ComponentPtr> items_;
  std::vector<host::Action> hooks_;
};

}  // namespace support
