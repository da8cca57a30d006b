#include "host/receiver/Errors.h"

#include <memory>
#include <new>
#include <string>

#include "host/include/Error.h"

namespace receiver {
namespace {

/// An exception of the interpreter, as it was raised.
struct Exception : host::Object {
  Exception(Reference type_, Reference value_, Reference traceback_)
      : type(std::move(type_)), value(std::move(value_)), traceback(std::move(traceback_)) {}

  Reference type;
  Reference value;
  Reference traceback;
};

/// Returns the built-in exception of that name; RuntimeError when there is none.
Reference builtinException(const std::string& name) {
  const Reference builtins = Reference::steal(PyImport_ImportModule(kBuiltins));
  Reference type = builtins ? Reference::steal(PyObject_GetAttrString(builtins.get(), name.c_str()))
                            : Reference();
  PyErr_Clear();
  if (type && PyExceptionClass_Check(type.get())) return type;
  return Reference::borrow(PyExc_RuntimeError);
}

const Exception* exceptionOf(const host::Error& error) {
  return dynamic_cast<const Exception*>(error.original().get());
}

void setPending(const host::Error& error) {
  if (const Exception* raised = exceptionOf(error)) {
    PyErr_Restore(Reference(raised->type).release(), Reference(raised->value).release(),
                  Reference(raised->traceback).release());
  } else {
    const Reference message = Reference::steal(newText(error.message()));
    if (message) PyErr_SetObject(builtinException(error.type()).get(), message.get());
  }
}

}  // namespace

void raisePending() {
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* traceback = nullptr;
  PyErr_Fetch(&type, &value, &traceback);
  PyErr_NormalizeException(&type, &value, &traceback);
  auto raised = std::make_shared<Exception>(Reference::steal(type), Reference::steal(value),
                                            Reference::steal(traceback));
  // What the exception says of itself is not asked: that may be anybody's code.
  throw host::Error("Exception", "", 0, raised);
}

bool isA(const host::Error& error, PyObject* type) {
  const Exception* raised = exceptionOf(error);
  return raised && PyErr_GivenExceptionMatches(raised->type.get(), type) != 0;
}

Reference checked(PyObject* result) {
  if (!result) raisePending();
  return Reference::steal(result);
}

int checked(int result) {
  if (result == -1) raisePending();
  return result;
}

void setPending() noexcept {
  try {
    throw;
  } catch (const host::Error& error) {
    setPending(error);
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
}

}  // namespace receiver
