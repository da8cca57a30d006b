#include "host/receiver/Channels.h"

namespace receiver {

host::ObjectRef ServiceList::getRoot() {
  return objectRef(invoke<"getRoot">(object_));
}

host::ObjectRef ServiceList::getCurrentSelection() {
  return objectRef(invoke<"getCurrentSelection">(object_));
}

void ServiceList::setRoot(const host::ObjectRef& root) {
  invoke<"setRoot">(object_, root);
}

void ServiceList::setCurrentSelection(const host::ObjectRef& service) {
  invoke<"setCurrentSelection">(object_, service);
}

Reference Channels::database() const {
  return invoke<"getInstance">(names_.get<"eDVBDB">());
}

void Channels::readTransponders() {
  invoke<"readTransponders">(names_.get<"nimmanager">());
}

void Channels::reloadServicelist() {
  invoke<"reloadServicelist">(database());
}

void Channels::reloadBouquets() {
  invoke<"reloadBouquets">(database());
}

std::shared_ptr<host::ServiceList> Channels::infoBarServicelist() {
  const Reference instance = attribute<"instance">(names_.get<"InfoBar">());
  if (instance.get() == Py_None) return nullptr;
  return std::make_shared<ServiceList>(attribute<"servicelist">(instance));
}

}  // namespace receiver
