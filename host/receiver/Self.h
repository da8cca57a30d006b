#pragma once

#include <optional>
#include <string_view>

#include "host/receiver/Objects.h"

namespace receiver {

/// The interpreter's object that a C++ object belongs to. It is known only while an operation of it
/// runs, so that nothing here keeps it alive or outlives it.
class Self {
 public:
  /// Makes `object` known while it lives. Operations may run within each other, and those of
  /// several threads may end in any order.
  class Entered {
   public:
    Entered(Self& self, PyObject* object) : self_(self) {
      self_.object_ = object;
      ++self_.running_;
    }
    ~Entered() {
      if (--self_.running_ == 0) self_.object_ = nullptr;
    }
    Entered(const Entered&) = delete;
    Entered& operator=(const Entered&) = delete;

   private:
    Self& self_;
  };

  PyObject* get() const { return object_; }

  /// As host::Overrides says.
  std::optional<host::Value> callOverride(std::string_view name,
                                          const host::Value::List& arguments) const;

 private:
  PyObject* object_ = nullptr;
  int running_ = 0;  ///< how many operations run
};

}  // namespace receiver
