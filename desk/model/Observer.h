#pragma once

#include <string>

namespace desk {

/// Is told what happens inside the stand-in receiver, as it happens.
class Observer {
 public:
  virtual ~Observer() = default;

  /// The module has printed `line`.
  virtual void onLogLine(const std::string& line) = 0;

  /// `command` is about to run in a shell.
  virtual void onCommand(const std::string& command) = 0;

  /// An error has reached the host; `text` is its class and message.
  virtual void onError(const std::string& text) = 0;
};

}  // namespace desk
