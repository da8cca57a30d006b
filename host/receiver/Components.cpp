#include "Components.h"

#include "Peer.h"

namespace receiver {
namespace {

class StaticTextProxy : public host::StaticText, public Proxy {
 public:
  using Proxy::Proxy;
  void setText(const std::string& text) override { invoke(object(), "setText", text); }
};

class ActionMapProxy : public host::ActionMap, public Proxy {
 public:
  using Proxy::Proxy;
};

Reference mappingOf(const std::vector<host::ActionBinding>& bindings) {
  Reference mapping = checked(PyDict_New());
  for (const host::ActionBinding& binding : bindings) {
    checked(PyDict_SetItemString(mapping.get(), std::string(binding.action).c_str(),
                                 methodOf(binding.handler).get()));
  }
  return mapping;
}

}  // namespace

void IpkgComponentProxy::addCallback(const host::IpkgCallback& callback) {
  invoke(object(), "addCallback", methodOf(callback));
}

void IpkgComponentProxy::startCmd(host::IpkgCommand command) {
  invoke(object(), "startCmd", ipkgCommand(names_, command));
}

Reference ipkgCommand(const Names& names, host::IpkgCommand command) {
  const bool installs = command == host::IpkgCommand::CMD_INSTALL;
  return attribute(names.get("IpkgComponent"), installs ? "CMD_INSTALL" : "CMD_UPDATE");
}

std::shared_ptr<host::StaticText> Components::makeStaticText(const std::string& text) {
  return std::make_shared<StaticTextProxy>(call(names_.get("StaticText"), text));
}

std::shared_ptr<host::Label> Components::makeLabel(const std::string& text) {
  return std::make_shared<LabelProxy>(call(names_.get("Label"), text));
}

std::shared_ptr<host::List> Components::makeList(const host::Value::List& entries) {
  return std::make_shared<ListProxy>(call(names_.get("List"), entries));
}

std::shared_ptr<host::MenuList> Components::makeMenuList(const std::vector<std::string>& rows) {
  return std::make_shared<MenuListProxy>(call(names_.get("MenuList"), rows));
}

std::shared_ptr<host::ActionMap> Components::makeActionMap(const host::ActionMapping& mapping) {
  return makeMap("ActionMap", mapping);
}

std::shared_ptr<host::ActionMap> Components::makeNumberActionMap(
    const host::ActionMapping& mapping) {
  return makeMap("NumberActionMap", mapping);
}

std::shared_ptr<host::ActionMap> Components::makeMap(const char* name,
                                                     const host::ActionMapping& mapping) {
  std::vector<Reference> arguments = {toObject(mapping.contexts), mappingOf(mapping.bindings)};
  if (mapping.priority != 0) arguments.push_back(toObject(mapping.priority));
  return std::make_shared<ActionMapProxy>(callWith(names_.get(name), arguments));
}

std::shared_ptr<host::ComConsole> Components::makeComConsole() {
  return std::make_shared<ComConsoleProxy>(call(names_.get("ComConsole")));
}

std::shared_ptr<host::IpkgComponent> Components::makeIpkgComponent() {
  return std::make_shared<IpkgComponentProxy>(names_, call(names_.get("IpkgComponent")));
}

host::ObjectRef Components::loadPixmap(const std::string& path, bool cached) {
  return objectRef(
      callWith(names_.get("LoadPixmap"), {}, Keywords().add("path", path).add("cached", cached)));
}

}  // namespace receiver
