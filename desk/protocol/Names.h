#pragma once

#include <string>
#include <vector>

#include "desk/protocol/Messages.h"

namespace desk {

/// Return the name of a value, as frames and events hold it and viewers see it.
const char* nameOf(MessageContent::Type type);
const char* nameOf(Package::State state);
const char* nameOf(Event::Kind kind);

/// Return the value of a name. Raise ProtocolError when there is none.
MessageContent::Type typeOf(const std::string& name);
Package::State stateOf(const std::string& name);

/// Returns how a viewer is told whether something runs.
inline const char* statusOf(bool is_running) {
  return is_running ? "running" : "finished";
}

/// Returns the texts of a screen but for its title and the labels of keys.
std::vector<std::string> messagesOf(const ScreenContent& screen);

}  // namespace desk
