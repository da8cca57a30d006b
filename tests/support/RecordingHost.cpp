#include "tests/support/RecordingHost.h"

namespace support {

host::ObjectRef RecordingServiceList::getRoot() {
  journal_.note("servicelist.getRoot()");
  return std::make_shared<RecordingObject>("<root>");
}

host::ObjectRef RecordingServiceList::getCurrentSelection() {
  journal_.note("servicelist.getCurrentSelection()");
  return std::make_shared<RecordingObject>("<service>");
}

void RecordingServiceList::setRoot(const host::ObjectRef& root) {
  journal_.note("servicelist.setRoot(" + described(root) + ")");
}

void RecordingServiceList::setCurrentSelection(const host::ObjectRef& service) {
  journal_.note("servicelist.setCurrentSelection(" + described(service) + ")");
}

void RecordingChannels::readTransponders() {
  journal_.note("nimmanager.readTransponders()");
}

void RecordingChannels::reloadServicelist() {
  journal_.note("eDVBDB.getInstance().reloadServicelist()");
}

void RecordingChannels::reloadBouquets() {
  journal_.note("eDVBDB.getInstance().reloadBouquets()");
}

std::shared_ptr<host::ServiceList> RecordingChannels::infoBarServicelist() {
  journal_.note("InfoBar.instance.servicelist");
  return hasInfoBar ? std::make_shared<RecordingServiceList>(journal_) : nullptr;
}

void RecordingHost::bind(const host::Binding& binding) {
  const std::string name(binding.name);
  const std::string bound_as(binding.bound_as);
  journal_.note("from " + std::string(binding.unit) + " import " + name +
                (name == bound_as ? "" : " as " + bound_as));
}

std::string RecordingHost::translate(std::string_view original) {
  const std::string text(original);
  journal_.note("_(" + quoted(text) + ")");
  const auto translation = translations.find(text);
  return translation == translations.end() ? text : translation->second;
}

void RecordingHost::print(const std::string& line) {
  journal_.note("print(" + quoted(line) + ")");
}

bool RecordingHost::fileExists(const std::string& path) {
  journal_.note("fileExists(" + quoted(path) + ")");
  return system.has(path);
}

std::string RecordingHost::resolveFilename(host::Scope, const std::string& relative) {
  journal_.note("resolveFilename(SCOPE_PLUGINS" +
                (relative.empty() ? "" : ", " + quoted(relative)) + ")");
  return "/usr/lib/enigma2/python/Plugins/" + relative;
}

std::string RecordingHost::deviceName() {
  journal_.note("HardwareInfoVu().get_device_name()");
  return model;
}

void RecordingHost::clearPluginList() {
  journal_.note("plugins.clearPluginList()");
}

void RecordingHost::readPluginList(const std::string& directory) {
  journal_.note("plugins.readPluginList(" + quoted(directory) + ")");
}

}  // namespace support
