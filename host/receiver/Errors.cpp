#include <exception>
#include <new>

#include "host/receiver/Reference.h"

namespace receiver {
namespace {

/// An exception is kept as a tuple of its type, its value and its traceback; by its value alone
/// where there is no memory for that.
Object takePending() {
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* traceback = nullptr;
  PyErr_Fetch(&type, &value, &traceback);
  PyErr_NormalizeException(&type, &value, &traceback);
  const Object owned[] = {Object::steal(type), Object::steal(value), Object::steal(traceback)};
  PyObject* const parts = PyTuple_Pack(3, pointer(owned[0]), pointer(owned[1]), pointer(owned[2]));
  if (parts) return Object::steal(parts);
  PyErr_Clear();
  return owned[1];
}

void restore(const Object& exception) {
  if (!PyTuple_Check(pointer(exception))) {
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(pointer(exception))), pointer(exception));
    return;
  }
  PyObject* parts[3] = {};
  for (Py_ssize_t i = 0; i < 3; ++i) {
    PyObject* const part = PyTuple_GET_ITEM(pointer(exception), i);
    if (part == Py_None) continue;
    Py_INCREF(part);
    parts[i] = part;
  }
  PyErr_Restore(parts[0], parts[1], parts[2]);
}

}  // namespace

void raisePending() {
  throw host::Error(takePending());
}

void setPending() noexcept {
  try {
    throw;
  } catch (const host::Error& error) {
    restore(error.object());
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
}

}  // namespace receiver
