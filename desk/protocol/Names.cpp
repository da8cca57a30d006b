#include "desk/protocol/Names.h"

#include <algorithm>
#include <iterator>

namespace desk {
namespace {

template <class Value>
struct Name {
  Value value;
  const char* name;
};

constexpr Name<MessageContent::Type> kTypes[] = {
    {MessageContent::Type::info, "info"},
    {MessageContent::Type::error, "error"},
    {MessageContent::Type::yesno, "yesno"},
};

constexpr Name<Package::State> kStates[] = {
    {Package::State::waiting, "waiting"},
    {Package::State::running, "running"},
    {Package::State::done, "done"},
    {Package::State::failed, "failed"},
};

constexpr Name<Event::Kind> kEvents[] = {
    {Event::Kind::gui_killed, "gui-killed"},
    {Event::Kind::gui_started, "gui-started"},
    {Event::Kind::error, "error"},
};

template <class Value, std::size_t count>
const char* find(const Name<Value> (&names)[count], Value value) {
  return std::ranges::find(names, value, &Name<Value>::value)->name;
}

template <class Value, std::size_t count>
Value find(const Name<Value> (&names)[count], const std::string& name) {
  const auto* const found = std::ranges::find(names, name, &Name<Value>::name);
  if (found == std::end(names)) throw ProtocolError("not understood: '" + name + "'");
  return found->value;
}

}  // namespace

const char* nameOf(MessageContent::Type type) {
  return find(kTypes, type);
}

const char* nameOf(Package::State state) {
  return find(kStates, state);
}

const char* nameOf(Event::Kind kind) {
  return find(kEvents, kind);
}

MessageContent::Type typeOf(const std::string& name) {
  return find(kTypes, name);
}

Package::State stateOf(const std::string& name) {
  return find(kStates, name);
}

std::vector<std::string> messagesOf(const ScreenContent& screen) {
  std::vector<std::string> messages;
  for (const auto& [name, text] : screen.texts) {
    if (name != "title" && !name.starts_with("key_")) messages.push_back(text);
  }
  return messages;
}

}  // namespace desk
