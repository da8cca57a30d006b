#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/include/Screen.h"
#include "host/receiver/Components.h"
#include "host/receiver/Self.h"

namespace receiver {

/// The framework's side of a screen: the interpreter's object that the screen belongs to.
class Peer : public host::ScreenPeer {
 public:
  Peer(const Names& names, const Self& self) : names_(names), self_(self) {}

  PyObject* self() const { return self_.get(); }

  void init(host::Session& session) override;
  void setItem(std::string_view key, const host::ComponentPtr& component) override;
  std::shared_ptr<host::Label> label(std::string_view key) override;
  std::shared_ptr<host::List> list(std::string_view key) override;
  std::shared_ptr<host::MenuList> menuList(std::string_view key) override;
  void setAttribute(std::string_view name, const std::string& value) override;
  std::string attribute(std::string_view name, const std::string& value) override;
  void appendOnLayoutFinish(const host::Action& hook) override;
  void close(const host::Value& result) override;
  void callOperation(std::string_view name, const host::Value& argument) override;
  std::optional<host::Value> callOverride(std::string_view name,
                                          const host::Value::List& arguments) override {
    return self_.callOverride(name, arguments);
  }

 private:
  Reference item(std::string_view key) const;

  const Names& names_;
  const Self& self_;
};

/// Returns the interpreter's object of the screen that a method belongs to.
PyObject* selfOf(const host::Screen& screen);

/// Returns the bound method that a method of a screen means.
template <class... Arguments>
Reference methodOf(const host::Method<Arguments...>& method) {
  return attribute(selfOf(*method.screen), method.name);
}

}  // namespace receiver
