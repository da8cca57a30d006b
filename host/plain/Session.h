#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/plain/Node.h"

namespace plain {

/// A dialog or screen as a session is asked to open it.
struct Dialog {
  std::string name;                                     ///< of its class
  Object type;                                          ///< the class
  std::vector<Object> arguments;                        ///< by position
  std::map<std::string, Object, std::less<>> keywords;  ///< by keyword
  Object callback;  ///< what its result goes to, nothing for nobody

  /// Returns the argument `keyword`, nothing when it is not given.
  Object keyword(std::string_view keyword) const;
};

/// A session, which hands on what it is to open. Its operations return what that returns.
struct Session : Node {
  using Open = std::function<Object(Dialog dialog)>;
  explicit Session(Open open_) : open(std::move(open_)) {}
  std::string className() const override { return "Session"; }
  Object get(std::string_view name) override { return bound(name); }
  Object invoke(std::string_view name, Arguments arguments) override;

  const Open open;
};

}  // namespace plain
