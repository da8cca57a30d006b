#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Components.h"
#include "host/Screen.h"

namespace receiver {

/// The framework's side of a screen: the interpreter's object that the screen belongs to. It is
/// known only while one of its operations runs, so that nothing here keeps it alive or outlives it.
class Peer : public host::ScreenPeer {
 public:
  /// Lets the screen belong to `self` while it lives; restores what was before.
  class Entered {
   public:
    Entered(Peer& peer, PyObject* self) : peer_(peer), former_(peer.self_) { peer_.self_ = self; }
    ~Entered() { peer_.self_ = former_; }
    Entered(const Entered&) = delete;
    Entered& operator=(const Entered&) = delete;

   private:
    Peer& peer_;
    PyObject* former_;
  };

  explicit Peer(const Names& names) : names_(names) {}

  PyObject* self() const { return self_; }

  void init(host::Session& session) override;
  void setItem(std::string_view key, const host::ComponentPtr& component) override;
  std::shared_ptr<host::Label> label(std::string_view key) override;
  std::shared_ptr<host::List> list(std::string_view key) override;
  std::shared_ptr<host::MenuList> menuList(std::string_view key) override;
  void setAttribute(std::string_view name, const std::string& value) override;
  void appendOnLayoutFinish(const host::Action& hook) override;
  void close(const host::Value& result) override;
  void callOperation(std::string_view name, const host::Value& argument) override;

 private:
  Reference item(std::string_view key) const;

  const Names& names_;
  PyObject* self_ = nullptr;
};

/// Returns the interpreter's object of the screen that a method belongs to.
PyObject* selfOf(const host::Screen& screen);

/// Returns the bound method that a method of a screen means.
template <class... Arguments>
Reference methodOf(const host::Method<Arguments...>& method) {
  return attribute(selfOf(*method.screen), method.name);
}

}  // namespace receiver
