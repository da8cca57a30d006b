#pragma once

#include <memory>

#include "host/receiver/Module.h"
#include "host/receiver/Self.h"

namespace receiver {

struct Class;

/// The C++ side of an object of the interpreter.
class Instance {
 public:
  explicit Instance(const Class& type) : type_(type) {}
  virtual ~Instance() = default;

  const Class& type() const { return type_; }
  Self& self() { return self_; }

  /// The object whose operations and attributes the class describes, null when it is not yet there.
  virtual void* object() = 0;

 private:
  const Class& type_;
  Self self_;
};

/// A class as the interpreter has it. It lives as long as the process.
struct MadeClass {
  const Class& table;
  Module& module;
  Reference type;  ///< the interpreter's class
  Reference slot;  ///< the descriptor of what an object of it keeps its C++ side in
};

/// Gives an object its C++ side, which lives as long as this at least. Unless that is kept, the
/// object has its former one back afterwards.
class Attaching {
 public:
  /// Raises TypeError when `self` is of another class.
  Attaching(PyObject* self, const MadeClass& type, std::unique_ptr<Instance> instance);
  ~Attaching();
  Attaching(const Attaching&) = delete;
  Attaching& operator=(const Attaching&) = delete;

  void keep() { kept_ = true; }

 private:
  PyObject* self_;
  const MadeClass& type_;
  Reference holder_;
  Reference former_;
  bool kept_ = false;
};

/// The C++ side of `self`, kept alive while this lives.
class AttachedInstance {
 public:
  /// Raises AttributeError when `self` has none, TypeError when it is of another class.
  AttachedInstance(PyObject* self, const MadeClass& type);

  Instance& operator*() const;
  Instance* operator->() const { return &**this; }

 private:
  Reference holder_;
};

}  // namespace receiver
