#include "host/receiver/Components.h"

#include "host/receiver/Peer.h"

namespace receiver {
namespace {

class StaticTextProxy : public WidgetProxy<host::StaticText> {
 public:
  using WidgetProxy::WidgetProxy;
  void setText(const std::string& text) override { invoke<"setText">(object(), text); }
};

Reference mappingOf(const std::vector<host::ActionBinding>& bindings) {
  Reference mapping = checked(PyDict_New());
  for (const host::ActionBinding& binding : bindings) {
    checked(
        PyDict_SetItem(mapping.get(), keptName(binding.action), methodOf(binding.handler).get()));
  }
  return mapping;
}

}  // namespace

void IpkgComponentProxy::addCallback(const host::IpkgCallback& callback) {
  invoke<"addCallback">(object(), methodOf(callback));
}

void IpkgComponentProxy::startCmd(host::IpkgCommand command) {
  invoke<"startCmd">(object(), ipkgCommand(names_, command));
}

Reference ipkgCommand(const Names& names, host::IpkgCommand command) {
  const Reference component = names.get<"IpkgComponent">();
  const bool installs = command == host::IpkgCommand::CMD_INSTALL;
  return installs ? attribute<"CMD_INSTALL">(component) : attribute<"CMD_UPDATE">(component);
}

std::shared_ptr<host::StaticText> Components::makeStaticText(const std::string& text) {
  return std::make_shared<StaticTextProxy>(call(names_.get<"StaticText">(), text));
}

std::shared_ptr<host::Label> Components::makeLabel(const std::string& text) {
  return std::make_shared<LabelProxy>(call(names_.get<"Label">(), text));
}

std::shared_ptr<host::List> Components::makeList(const host::Value::List& entries) {
  return std::make_shared<ListProxy>(call(names_.get<"List">(), entries));
}

std::shared_ptr<host::MenuList> Components::makeMenuList(const std::vector<std::string>& rows) {
  return std::make_shared<MenuListProxy>(call(names_.get<"MenuList">(), rows));
}

std::shared_ptr<host::ActionMap> Components::makeActionMap(const host::ActionMapping& mapping) {
  return makeMap(names_.get<"ActionMap">(), mapping);
}

std::shared_ptr<host::ActionMap> Components::makeNumberActionMap(
    const host::ActionMapping& mapping) {
  return makeMap(names_.get<"NumberActionMap">(), mapping);
}

std::shared_ptr<host::ActionMap> Components::makeMap(const Reference& type,
                                                     const host::ActionMapping& mapping) {
  const Reference keys = mappingOf(mapping.bindings);
  return std::make_shared<WidgetProxy<host::ActionMap>>(
      mapping.priority == 0 ? call(type, mapping.contexts, keys)
                            : call(type, mapping.contexts, keys, mapping.priority));
}

std::shared_ptr<host::ComConsole> Components::makeComConsole() {
  return std::make_shared<ComConsoleProxy>(call(names_.get<"ComConsole">()));
}

std::shared_ptr<host::IpkgComponent> Components::makeIpkgComponent() {
  return std::make_shared<IpkgComponentProxy>(names_, call(names_.get<"IpkgComponent">()));
}

host::ObjectRef Components::loadPixmap(const std::string& path, bool cached) {
  return objectRef(
      Arguments().add<"path">(path).add<"cached">(cached).passTo(names_.get<"LoadPixmap">()));
}

}  // namespace receiver
