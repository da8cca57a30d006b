#include "tests/support/RecordingComponents.h"

#include <map>

namespace support {
namespace {

/// A mapping has no order, so that its keys are shown sorted.
std::string constructionOf(const std::string& kind, const host::ActionMapping& mapping) {
  std::map<std::string, std::string> handlers;
  for (const host::ActionBinding& binding : mapping.bindings) {
    handlers[std::string(binding.action)] = binding.handler.name;
  }
  std::string pairs;
  for (const auto& [action, handler] : handlers) {
    pairs += (pairs.empty() ? "" : ", ") + quoted(action) + ": " + handler;
  }
  return kind + "(" + bracketed(mapping.contexts) + ", {" + pairs + "}" +
         (mapping.priority != 0 ? ", " + std::to_string(mapping.priority) : "") + ")";
}

}  // namespace

RecordingList::RecordingList(Journal& journal, const host::Value::List& entries)
    : RecordedComponent(journal, "List(" + bracketed(entries) + ")"), entries(entries) {}

void RecordingList::setList(const host::Value::List& newEntries) {
  journal.note(name + ".setList(" + bracketed(newEntries) + ")");
  entries = newEntries;
}

host::Value RecordingList::getCurrent() {
  journal.note(name + ".getCurrent()");
  return cursor < entries.size() ? entries[cursor] : host::Value();
}

RecordingMenuList::RecordingMenuList(Journal& journal, const std::vector<std::string>& rows)
    : RecordedComponent(journal, "MenuList(" + bracketed(rows) + ")"), rows(rows) {}

void RecordingMenuList::setList(const std::vector<std::string>& newRows) {
  journal.note(name + ".l.setList(" + bracketed(newRows) + ")");
  rows = newRows;
}

host::Value RecordingMenuList::getCurrent() {
  journal.note(name + ".getCurrent()");
  return cursor < rows.size() ? host::Value(rows[cursor]) : host::Value();
}

RecordingActionMap::RecordingActionMap(Journal& journal, const std::string& kind,
                                       const host::ActionMapping& mapping)
    : RecordedComponent(journal, constructionOf(kind, mapping)), mapping(mapping) {}

void RecordingIpkgComponent::addCallback(const host::IpkgCallback& newCallback) {
  journal.note("ipkg.addCallback(" + newCallback.name + ")");
  callback = newCallback;
}

void RecordingIpkgComponent::startCmd(host::IpkgCommand command) {
  journal.note(command == host::IpkgCommand::CMD_UPDATE ? "ipkg.startCmd(CMD_UPDATE)"
                                                        : "ipkg.startCmd(CMD_INSTALL)");
}

template <class Widget, class... Arguments>
std::shared_ptr<Widget> RecordingComponents::make(const Arguments&... arguments) {
  auto widget = std::make_shared<Widget>(journal_, arguments...);
  journal_.note(widget->construction);
  return widget;
}

std::shared_ptr<host::StaticText> RecordingComponents::makeStaticText(const std::string& text) {
  return make<RecordingStaticText>(std::string("StaticText"), text);
}

std::shared_ptr<host::Label> RecordingComponents::makeLabel(const std::string& text) {
  return make<RecordingLabel>(std::string("Label"), text);
}

std::shared_ptr<host::List> RecordingComponents::makeList(const host::Value::List& entries) {
  return make<RecordingList>(entries);
}

std::shared_ptr<host::MenuList> RecordingComponents::makeMenuList(
    const std::vector<std::string>& rows) {
  return make<RecordingMenuList>(rows);
}

std::shared_ptr<host::ActionMap> RecordingComponents::makeActionMap(
    const host::ActionMapping& mapping) {
  return make<RecordingActionMap>(std::string("ActionMap"), mapping);
}

std::shared_ptr<host::ActionMap> RecordingComponents::makeNumberActionMap(
    const host::ActionMapping& mapping) {
  return make<RecordingActionMap>(std::string("NumberActionMap"), mapping);
}

std::shared_ptr<host::ComConsole> RecordingComponents::makeComConsole() {
  journal_.note("ComConsole()");
  return std::make_shared<RecordingComConsole>();
}

std::shared_ptr<host::IpkgComponent> RecordingComponents::makeIpkgComponent() {
  journal_.note("IpkgComponent()");
  return std::make_shared<RecordingIpkgComponent>(journal_);
}

host::ObjectRef RecordingComponents::loadPixmap(const std::string& path, bool cached) {
  journal_.note("LoadPixmap(path=" + quoted(path) + ", cached=" + (cached ? "True" : "False") +
                ")");
  if (missingPictures.contains(path)) return nullptr;
  return std::make_shared<RecordingObject>("<pixmap " + path + ">");
}

}  // namespace support
