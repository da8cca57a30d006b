#pragma once

#include <string>
#include <variant>
#include <vector>

#include "desk/protocol/Frame.h"
#include "host/plain/Session.h"

namespace desk {

/// A message on top of everything. An information or error closes by key or after `timeout`
/// seconds; a question closes with true for yes, false for no and for the exit key.
struct MessageBox {
  std::string text;
  MessageContent::Type type = MessageContent::Type::yesno;
  int timeout = 0;  ///< seconds; 0 for none
};

/// A choice among tuples whose first item is shown. Closes with the chosen tuple, or with nothing
/// when it was left.
struct ChoiceBox {
  std::string title;
  std::vector<host::Object> list;
};

/// A screen that runs shell commands one after the other, shows their output and closes on a key.
struct Console {
  std::string title;
  std::vector<std::string> cmdlist;
};

/// A screen that installs packages, each by its name or by the path of a package file, shows their
/// progress and closes on a key.
struct Ipkg {
  std::vector<std::string> packages;
};

/// A screen of the module: an object of its class `type`, made with the session and `arguments`.
struct ModuleScreen {
  std::string name;
  host::Object type;
  std::vector<host::Object> arguments = {};
};

/// Anything that the session opens.
using Dialog = std::variant<MessageBox, ChoiceBox, Console, Ipkg, ModuleScreen>;

/// Returns what the module has asked for. Raises what a wrong argument raises.
Dialog dialogOf(const plain::Dialog& asked);

}  // namespace desk
