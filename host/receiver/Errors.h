#pragma once

#include "host/include/Error.h"
#include "host/receiver/Reference.h"

namespace receiver {

/// Raises the interpreter's pending error as host::Error, which keeps the exception as it is.
[[noreturn]] void raisePending();

/// Returns whether `error` is an exception of the interpreter that the class `type` catches.
bool isA(const host::Error& error, PyObject* type);

/// Takes over the new reference `result`, or raises the pending error when it is null.
Reference checked(PyObject* result);

/// Returns `result`, or raises the pending error when it is -1.
int checked(int result);

/// To be called in a `catch (...)`: makes the C++ exception the interpreter's pending error. One
/// that came from the interpreter arrives there as it was.
void setPending() noexcept;

}  // namespace receiver
