#pragma once

#include <memory>

#include "Module.h"
#include "Peer.h"
#include "Sessions.h"

namespace receiver {

struct Class;

/// The C++ side of an object of the interpreter.
class Instance {
 public:
  explicit Instance(const Class& type) : type_(type) {}
  virtual ~Instance() = default;

  const Class& type() const { return type_; }

  /// The object whose operations and attributes the class describes.
  virtual void* object() = 0;

  /// The framework's side of a screen, null for other objects.
  virtual Peer* peer() { return nullptr; }

  /// Takes over what the framework may have changed in the attributes that are its own.
  virtual void readBack(PyObject* /*self*/) {}

 private:
  const Class& type_;
};

/// Gives `self` its C++ side, in place of any former one. It goes with `self`.
void attachInstance(PyObject* self, std::unique_ptr<Instance> instance);

/// The C++ side of `self`, kept alive while this lives.
class AttachedInstance {
 public:
  /// Raises AttributeError when `self` has none, TypeError when it is of another class.
  AttachedInstance(PyObject* self, const Class& type);

  Instance& operator*() const;
  Instance* operator->() const { return &**this; }

 private:
  Reference holder_;
};

}  // namespace receiver
