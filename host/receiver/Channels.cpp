#include "Channels.h"

namespace receiver {

host::ObjectRef ServiceList::getRoot() {
  return objectRef(invoke(object_, "getRoot"));
}

host::ObjectRef ServiceList::getCurrentSelection() {
  return objectRef(invoke(object_, "getCurrentSelection"));
}

void ServiceList::setRoot(const host::ObjectRef& root) {
  invoke(object_, "setRoot", root);
}

void ServiceList::setCurrentSelection(const host::ObjectRef& service) {
  invoke(object_, "setCurrentSelection", service);
}

Reference Channels::database() const {
  return invoke(names_.get("eDVBDB"), "getInstance");
}

void Channels::readTransponders() {
  invoke(names_.get("nimmanager"), "readTransponders");
}

void Channels::reloadServicelist() {
  invoke(database(), "reloadServicelist");
}

void Channels::reloadBouquets() {
  invoke(database(), "reloadBouquets");
}

std::shared_ptr<host::ServiceList> Channels::infoBarServicelist() {
  const Reference instance = attribute(names_.get("InfoBar"), "instance");
  if (instance.get() == Py_None) return nullptr;
  return std::make_shared<ServiceList>(attribute(instance, "servicelist"));
}

}  // namespace receiver
