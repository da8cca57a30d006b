#pragma once

#include <functional>
#include <string>

#include "host/include/IpkgEvent.h"
#include "host/include/Value.h"

namespace host {

class Screen;

/// An operation of a screen, as it is handed to the framework. A host with an interpreter looks
/// `name` up on the screen's own object, which it knows by the screen's peer; the others use
/// `call`, which is good as long as the screen lives.
template <class... Arguments>
struct Method {
  Screen* screen = nullptr;
  std::string name;
  std::function<void(Arguments...)> call;
};

/// A handler of a key or of a hook.
using Action = Method<>;

/// A dialog's callback; takes the dialog's close result (nothing, when it gave none).
using Answer = Method<const Value&>;

/// A package-manager callback; takes the event and its parameter.
using IpkgCallback = Method<IpkgEvent, const Value&>;

}  // namespace host
