#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/include/IpkgEvent.h"
#include "host/include/Value.h"

namespace host {

class Screen;
class ScreenPeer;
class Session;

/// A message on top of everything. TYPE_INFO and TYPE_ERROR close by key or after `timeout`
/// seconds; TYPE_YESNO closes with true for yes, false for no and for the exit key. TYPE_YESNO and
/// no time-out are the framework's own defaults, which a host does not pass on.
struct MessageBox {
  enum Type { TYPE_YESNO, TYPE_INFO, TYPE_ERROR };
  std::string text;
  Type type = TYPE_YESNO;
  int timeout = 0;  ///< seconds; 0 for none
};

/// A choice among tuples whose first item is shown. Closes with the chosen tuple, or with nothing
/// when it was left.
struct ChoiceBox {
  std::string title;
  Value::List list;
};

/// A screen that runs shell commands one after the other, shows their output and closes on a key.
struct Console {
  std::string title;
  std::vector<std::string> cmdlist;
};

/// One job of the package screen: CMD_INSTALL with the name of a package or the path of a package
/// file.
struct PackageCommand {
  IpkgCommand command;
  std::string package;

  friend bool operator==(const PackageCommand&, const PackageCommand&) = default;
};

/// A screen that carries out package commands with their progress and closes on a key.
struct Ipkg {
  std::vector<PackageCommand> cmdList;
};

/// One of the module's own screens. A host with an interpreter opens its class `name` with
/// `arguments`; the others call `create`, which does the same. `skin` is the class's own layout in
/// the skin's XML; empty when the host's skin holds it.
struct ScreenClass {
  std::string name;
  std::vector<Value> arguments;
  std::function<std::unique_ptr<Screen>(ScreenPeer&, Session&)> create;
  std::string_view skin = {};
};

/// Anything that a session opens.
using Dialog = std::variant<MessageBox, ChoiceBox, Console, Ipkg, ScreenClass>;

}  // namespace host
