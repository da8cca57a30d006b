#pragma once

#include <utility>

#include "host/receiver/Interpreter.h"

namespace receiver {

/// An owned reference to an interpreter's object, or none.
class Reference {
 public:
  Reference() = default;

  /// Takes over a reference that the caller owns.
  static Reference steal(PyObject* object) { return Reference(object); }

  /// Makes a reference to an object that somebody else owns.
  static Reference borrow(PyObject* object) {
    Py_XINCREF(object);
    return Reference(object);
  }

  Reference(const Reference& other) : object_(other.object_) { Py_XINCREF(object_); }
  Reference(Reference&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Reference& operator=(Reference other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Reference() { Py_XDECREF(object_); }

  PyObject* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Hands the reference over to the caller.
  PyObject* release() { return std::exchange(object_, nullptr); }

 private:
  explicit Reference(PyObject* object) : object_(object) {}

  PyObject* object_ = nullptr;
};

}  // namespace receiver
