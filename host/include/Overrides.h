#pragma once

#include <optional>
#include <string_view>

#include "host/include/Value.h"

namespace host {

/// The operations that somebody has put in the place of an object's own, as a sub-class in an
/// interpreter does. A host without one has none.
class Overrides {
 public:
  virtual ~Overrides() = default;

  /// Calls what is in the place of the operation `name`. Returns its result, or none when the
  /// object's own operation is in its place. Raises what that raises.
  virtual std::optional<Value> callOverride(std::string_view /*name*/,
                                            const Value::List& /*arguments*/) {
    return std::nullopt;
  }
};

}  // namespace host
