#pragma once

#include <string>

#include "desk/protocol/Messages.h"

namespace desk {

/// Is told what happens to the GUI between frames.
class EventListener {
 public:
  virtual ~EventListener() = default;

  virtual void onEvent(const Event& event) = 0;

  /// The module has printed `line`.
  virtual void onLogLine(const std::string& line) = 0;

  /// `command` is about to run in a shell of the receiver.
  virtual void onCommand(const std::string& command) = 0;
};

}  // namespace desk
