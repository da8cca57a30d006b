#pragma once

#include "host/include/Module.h"
#include "host/receiver/Reference.h"

namespace receiver {

/// Returns a new function of the interpreter that runs `operation`. In a class it binds to an
/// object as a function of the interpreter's own does. The operation and the module stay for good.
Object newFunction(const host::Module& module, const host::Operation& operation, bool is_method);

/// Returns the built-in names' dictionary.
const Object& builtins();

}  // namespace receiver
