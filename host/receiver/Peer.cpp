#include "host/receiver/Peer.h"

#include "host/receiver/Sessions.h"

namespace receiver {

void Peer::init(host::Session& session) {
  const Reference own = Reference::borrow(self());
  const Reference opener = static_cast<ScreenSession&>(session).takeOpener();
  invoke<"__init__">(names_.get<"Screen">(), own, opener);
  receiver::setAttribute<"session">(self(), opener);
}

void Peer::setItem(std::string_view key, const host::ComponentPtr& component) {
  auto* const widget = static_cast<PyObject*>(component->native_handle());
  checked(PyObject_SetItem(self(), keptName(key), widget));
}

Reference Peer::item(std::string_view key) const {
  return checked(PyObject_GetItem(self(), keptName(key)));
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
  receiver::setAttribute(self(), name, toObject(value));
}

std::string Peer::attribute(std::string_view name, const std::string& /*value*/) {
  return textOf(receiver::attribute(self(), name).get());
}

void Peer::appendOnLayoutFinish(const host::Action& hook) {
  invoke<"append">(receiver::attribute<"onLayoutFinish">(self()), methodOf(hook));
}

/// A screen that closes with nothing passes nothing on.
void Peer::close(const host::Value& result) {
  const Reference close = receiver::attribute<"close">(self());
  if (result.isNothing()) {
    call(close);
  } else {
    call(close, result);
  }
}

void Peer::callOperation(std::string_view name, const host::Value& argument) {
  call(receiver::attribute(self(), name), argument);
}

PyObject* selfOf(const host::Screen& screen) {
  return static_cast<const Peer&>(screen.peer()).self();
}

}  // namespace receiver
