#pragma once

#include "host/include/Object.h"
#include "host/receiver/Interpreter.h"

namespace receiver {

using host::Object;

/// Returns the interpreter's object, None for nothing; the reference stays `object`'s.
inline PyObject* pointer(const Object& object) {
  return object.handle() ? static_cast<PyObject*>(object.handle()) : Py_None;
}

/// Makes a reference to an object that somebody else owns.
inline Object borrowed(PyObject* object) {
  Py_XINCREF(object);
  return Object::steal(object);
}

/// Raises the pending exception.
[[noreturn]] void raisePending();

/// Sets the exception that is being handled as the pending one. For use in a catch block.
void setPending() noexcept;

/// Takes over what a call of the interpreter has returned. Raises the pending exception when that
/// is null or -1.
inline Object checked(PyObject* result) {
  if (!result) raisePending();
  return Object::steal(result);
}
inline int checked(int result) {
  if (result == -1) raisePending();
  return result;
}

/// Returns the interpreter's own text for a name. It is made once and kept.
inline PyObject* interned(host::Text text) {
  void*& object = text.kept().object;
  if (!object) object = internedText(text.kept().characters.data());
  if (!object) raisePending();
  return static_cast<PyObject*>(object);
}

}  // namespace receiver
