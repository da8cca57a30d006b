#pragma once

/// The interpreter's C API, and all in which its versions differ: 2.7 and 3.5 or later.

#define PY_SSIZE_T_CLEAN
#include <Python.h>  // before any other header, as its documentation asks

#include <optional>
#include <string>
#include <string_view>

namespace receiver {

#if PY_MAJOR_VERSION >= 3

/// Sets `bytes` to those of `text`. Returns false with an error set when it has none. Whatever the
/// interpreter's text holds comes back from newText() as it was.
inline bool copyText(PyObject* text, std::string& bytes) {
  Py_ssize_t size = 0;
  if (const char* utf8 = PyUnicode_AsUTF8AndSize(text, &size)) {
    bytes.assign(utf8, static_cast<std::size_t>(size));
    return true;
  }
  PyErr_Clear();
  PyObject* const encoded = PyUnicode_AsEncodedString(text, "utf-8", "surrogatepass");
  if (!encoded) return false;
  bytes.assign(PyBytes_AS_STRING(encoded), static_cast<std::size_t>(PyBytes_GET_SIZE(encoded)));
  Py_DECREF(encoded);
  return true;
}

/// Returns the characters of a text of no derived class, none of anything else. They are good as
/// long as it lives.
inline std::optional<std::string_view> charactersOf(PyObject* object) {
  if (!PyUnicode_CheckExact(object)) return std::nullopt;
  Py_ssize_t size = 0;
  if (const char* utf8 = PyUnicode_AsUTF8AndSize(object, &size)) {
    return std::string_view(utf8, static_cast<std::size_t>(size));
  }
  PyErr_Clear();
  return std::nullopt;
}

/// Returns a new reference to a text, null with an error set.
inline PyObject* newText(std::string_view bytes) {
  return PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogatepass");
}

/// Returns a borrowed reference to what a dictionary holds under `name`; null, maybe with an error
/// set, when it holds nothing.
inline PyObject* dictionaryItem(PyObject* dictionary, PyObject* name) {
  return PyDict_GetItemWithError(dictionary, name);
}

/// Returns a new reference to a text of which there is one, null with an error set.
inline PyObject* internedText(const char* text) {
  return PyUnicode_InternFromString(text);
}

inline PyObject* newInteger(long number) {
  return PyLong_FromLong(number);
}

/// Returns what is raised when calls are nested too deeply.
inline PyObject* recursionError() {
  return PyExc_RecursionError;
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

/// A text is bytes already; a unicode object is one in UTF-8, as the framework writes its texts.
inline bool copyText(PyObject* text, std::string& bytes) {
  PyObject* encoded = text;
  Py_INCREF(encoded);
  if (PyUnicode_Check(text)) {
    Py_DECREF(encoded);
    encoded = PyUnicode_AsUTF8String(text);
  }
  if (!encoded) return false;
  if (!PyString_Check(encoded)) {
    PyErr_SetString(PyExc_TypeError, "a text is required");
    Py_DECREF(encoded);
    return false;
  }
  bytes.assign(PyString_AS_STRING(encoded), static_cast<std::size_t>(PyString_GET_SIZE(encoded)));
  Py_DECREF(encoded);
  return true;
}

inline std::optional<std::string_view> charactersOf(PyObject* object) {
  if (!PyString_CheckExact(object)) return std::nullopt;
  return std::string_view(PyString_AS_STRING(object),
                          static_cast<std::size_t>(PyString_GET_SIZE(object)));
}

inline PyObject* dictionaryItem(PyObject* dictionary, PyObject* name) {
  return PyDict_GetItem(dictionary, name);
}

inline PyObject* internedText(const char* text) {
  return PyString_InternFromString(text);
}

inline PyObject* newText(std::string_view bytes) {
  return PyString_FromStringAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size()));
}

inline void keepType(PyTypeObject& type) {
  type.ob_refcnt = 1;
}

inline PyObject* newInteger(long number) {
  return PyInt_FromLong(number);
}

inline PyObject* recursionError() {
  return PyExc_RuntimeError;
}

inline PyObject* boundMethod(PyObject* function, PyObject* self) {
  return PyMethod_New(function, self, reinterpret_cast<PyObject*>(Py_TYPE(self)));
}

#endif

#if PY_VERSION_HEX >= 0x03090000

/// Returns the new reference that a call returns, null with the error set. After the `count`
/// positional arguments come those that `names`, a tuple or null, has the names of.
inline PyObject* callObject(PyObject* callable, PyObject* const* arguments, std::size_t count,
                            PyObject* names) {
  return PyObject_Vectorcall(callable, arguments, count, names);
}

/// As callObject, for the operation `name` of the first argument.
inline PyObject* callMethod(PyObject* name, PyObject* const* arguments, std::size_t count,
                            PyObject* names) {
  return PyObject_VectorcallMethod(name, arguments, count, names);
}

#else

/// Returns a new tuple of the arguments, null with an error set.
inline PyObject* newTuple(PyObject* const* arguments, std::size_t count) {
  PyObject* const tuple = PyTuple_New(static_cast<Py_ssize_t>(count));
  for (std::size_t i = 0; tuple && i < count; ++i) {
    Py_INCREF(arguments[i]);
    PyTuple_SET_ITEM(tuple, static_cast<Py_ssize_t>(i), arguments[i]);
  }
  return tuple;
}

/// Returns a new dictionary of the arguments by their names, null with an error set.
inline PyObject* newDictionary(PyObject* names, PyObject* const* arguments) {
  PyObject* const dictionary = PyDict_New();
  for (Py_ssize_t i = 0; dictionary && i < PyTuple_GET_SIZE(names); ++i) {
    if (PyDict_SetItem(dictionary, PyTuple_GET_ITEM(names, i), arguments[i]) == 0) continue;
    Py_DECREF(dictionary);
    return nullptr;
  }
  return dictionary;
}

inline PyObject* callObject(PyObject* callable, PyObject* const* arguments, std::size_t count,
                            PyObject* names) {
  PyObject* const positional = newTuple(arguments, count);
  PyObject* const keywords = names ? newDictionary(names, arguments + count) : nullptr;
  const bool complete = positional && (keywords || !names);
  PyObject* const result = complete ? PyObject_Call(callable, positional, keywords) : nullptr;
  Py_XDECREF(positional);
  Py_XDECREF(keywords);
  return result;
}

inline PyObject* callMethod(PyObject* name, PyObject* const* arguments, std::size_t count,
                            PyObject* names) {
  PyObject* const method = PyObject_GetAttr(arguments[0], name);
  if (!method) return nullptr;
  PyObject* const result = callObject(method, arguments + 1, count - 1, names);
  Py_DECREF(method);
  return result;
}

#endif

}  // namespace receiver
