#pragma once

/// The interpreter's C API, and all in which its versions differ: 2.7 and 3.5 or later.

#define PY_SSIZE_T_CLEAN
#include <Python.h>  // before any other header, as its documentation asks

#include <string>

namespace receiver {

#if PY_MAJOR_VERSION >= 3

inline constexpr const char* kBuiltins = "builtins";

inline bool isText(PyObject* object) {
  return PyUnicode_Check(object);
}

inline bool isInteger(PyObject* object) {
  return PyLong_Check(object);
}

/// Returns a new reference to the text form of `object`, null with an error set.
inline PyObject* textForm(PyObject* object) {
  return PyObject_Str(object);
}

/// Returns a new reference to the bytes of the text `text`, null with an error set. Whatever the
/// interpreter's text holds comes back from newText() as it was, and bytes compare as texts do.
inline PyObject* textBytes(PyObject* text) {
  return PyUnicode_AsEncodedString(text, "utf-8", "surrogatepass");
}

/// Returns a new reference to a text, null with an error set.
inline PyObject* newText(const std::string& bytes) {
  return PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogatepass");
}

inline PyObject* newInteger(long number) {
  return PyLong_FromLong(number);
}

/// Gives a type that is made at run time the one reference that nobody gives back.
inline void keepType(PyTypeObject& type) {
  type.ob_base.ob_base.ob_refcnt = 1;
}

/// Returns a new reference to `function` bound to `self`, null with an error set.
inline PyObject* boundMethod(PyObject* function, PyObject* self) {
  return PyMethod_New(function, self);
}

#else

inline constexpr const char* kBuiltins = "__builtin__";

inline bool isText(PyObject* object) {
  return PyString_Check(object) || PyUnicode_Check(object);
}

inline bool isInteger(PyObject* object) {
  return PyInt_Check(object) || PyLong_Check(object);
}

inline PyObject* textForm(PyObject* object) {
  return PyUnicode_Check(object) ? PyUnicode_AsUTF8String(object) : PyObject_Str(object);
}

/// A text is bytes already; a unicode object is one in UTF-8, as the framework writes its texts.
inline PyObject* textBytes(PyObject* text) {
  if (PyUnicode_Check(text)) return PyUnicode_AsUTF8String(text);
  Py_INCREF(text);
  return text;
}

inline PyObject* newText(const std::string& bytes) {
  return PyString_FromStringAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size()));
}

inline void keepType(PyTypeObject& type) {
  type.ob_refcnt = 1;
}

inline PyObject* newInteger(long number) {
  return PyInt_FromLong(number);
}

inline PyObject* boundMethod(PyObject* function, PyObject* self) {
  return PyMethod_New(function, self, reinterpret_cast<PyObject*>(Py_TYPE(self)));
}

#endif

}  // namespace receiver
