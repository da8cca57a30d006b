#include "host/receiver/Self.h"

#include "host/receiver/Class.h"

namespace receiver {

std::optional<host::Value> Self::callOverride(std::string_view name,
                                              const host::Value::List& arguments) const {
  const Reference method = attribute(object_, name);
  if (isOperation(method.get(), name)) return std::nullopt;
  Arguments all;
  for (const host::Value& argument : arguments) all.add(argument);
  return valueOf(all.passTo(method).get());
}

}  // namespace receiver
