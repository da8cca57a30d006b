#pragma once

#include <cstddef>

#include "host/receiver/Interpreter.h"

namespace receiver {

/// Returns a type of objects of `size` bytes for the caller to complete. Nothing derives from it.
PyTypeObject plainType(const char* name, std::size_t size);

/// Returns a completed type, ready for use; it is never freed. Raises what making it ready raises.
PyTypeObject* readyType(const PyTypeObject& type);

}  // namespace receiver
