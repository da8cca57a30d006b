#include "tests/support/RecordingPeer.h"

#include <stdexcept>

namespace support {

std::string RecordingPeer::text(const std::string& key) const {
  const host::ComponentPtr& item = items_.at(key);
  if (const auto* label = dynamic_cast<RecordingLabel*>(item.get())) return label->text;
  return dynamic_cast<RecordingStaticText&>(*item).text;
}

void RecordingPeer::press(const std::string& action) {
  for (const auto& [key, item] : items_) {
    const auto* map = dynamic_cast<RecordingActionMap*>(item.get());
    if (!map) continue;
    for (const host::ActionBinding& binding : map->mapping.bindings) {
      if (binding.action == action) return binding.handler.call();
    }
  }
  throw std::out_of_range("no action map binds " + action);
}

void RecordingPeer::finishLayout() {
  const std::vector<host::Action> hooks = std::move(hooks_);
  hooks_.clear();
  for (const host::Action& hook : hooks) hook.call();
}

void RecordingPeer::init(host::Session&) {
  journal_.note("Screen.__init__(session)");
}

void RecordingPeer::setItem(std::string_view key, const host::ComponentPtr& component) {
  auto& recorded = dynamic_cast<RecordedComponent&>(*component);
  const std::string name = "self[" + quoted(std::string(key)) + "]";
  journal_.note(name + " = " + recorded.construction);
  recorded.name = name;
  items_[std::string(key)] = component;
}

void RecordingPeer::setAttribute(std::string_view name, const std::string& value) {
  journal_.note("self." + std::string(name) + " = " + quoted(value));
}

void RecordingPeer::appendOnLayoutFinish(const host::Action& hook) {
  journal_.note("onLayoutFinish.append(" + hook.name + ")");
  hooks_.push_back(hook);
}

void RecordingPeer::close(const host::Value& result) {
  journal_.note("close(" + (result.isNothing() ? "" : described(result)) + ")");
  closed = result;
}

void RecordingPeer::callOperation(std::string_view operation, const host::Value& argument) {
  const std::string name(operation);
  journal_.note("self." + name + "(" + described(argument) + ")");
  if (!operations.contains(name)) {
    throw host::Error("AttributeError", "the screen has no attribute '" + name + "'");
  }
}

}  // namespace support
