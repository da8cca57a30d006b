#include "Peer.h"

#include "Sessions.h"

namespace receiver {

void Peer::init(host::Session& session) {
  const Reference self = Reference::borrow(self_);
  const Reference opener = static_cast<ScreenSession&>(session).takeOpener();
  invoke<"__init__">(names_.get<"Screen">(), self, opener);
  receiver::setAttribute<"session">(self_, opener);
}

void Peer::setItem(std::string_view key, const host::ComponentPtr& component) {
  auto* const widget = static_cast<PyObject*>(component->native_handle());
  checked(PyObject_SetItem(self_, keptName(key), widget));
}

Reference Peer::item(std::string_view key) const {
  return checked(PyObject_GetItem(self_, keptName(key)));
}

std::shared_ptr<host::Label> Peer::label(std::string_view key) {
  return std::make_shared<LabelProxy>(item(key));
}

std::shared_ptr<host::List> Peer::list(std::string_view key) {
  return std::make_shared<ListProxy>(item(key));
}

std::shared_ptr<host::MenuList> Peer::menuList(std::string_view key) {
  return std::make_shared<MenuListProxy>(item(key));
}

void Peer::setAttribute(std::string_view name, const std::string& value) {
  receiver::setAttribute(self_, name, toObject(value));
}

void Peer::appendOnLayoutFinish(const host::Action& hook) {
  invoke<"append">(attribute<"onLayoutFinish">(self_), methodOf(hook));
}

/// A screen that closes with nothing passes nothing on.
void Peer::close(const host::Value& result) {
  const Reference close = attribute<"close">(self_);
  if (result.isNothing()) {
    call(close);
  } else {
    call(close, result);
  }
}

void Peer::callOperation(std::string_view name, const host::Value& argument) {
  call(attribute(self_, name), argument);
}

PyObject* selfOf(const host::Screen& screen) {
  return static_cast<const Peer&>(screen.peer()).self();
}

}  // namespace receiver
