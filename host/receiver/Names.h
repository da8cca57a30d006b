#pragma once

#include <string>

#include "host/include/Binding.h"
#include "host/receiver/Objects.h"

namespace receiver {

/// The names that the module has bound, in the module's own dictionary: what is found there is what
/// every host operation goes through.
class Names {
 public:
  /// `dictionary`: the module's.
  explicit Names(PyObject* dictionary);

  /// Binds a name as the statements "from unit import name" and "import *" do. Raises what the
  /// unit's import raises, and ImportError when the unit lacks the name.
  void bind(const host::Binding& binding);

  /// Return what is bound under a name. Raise NameError when nothing is.
  template <Literal name>
  Reference get() const {
    return get(named<name>());
  }
  Reference get(PyObject* name) const;

  void set(const Reference& name, const Reference& object) const;

  /// Return what a built-in name is now. Raise NameError when there is none.
  template <Literal name>
  Reference builtin() const {
    return builtin(named<name>());
  }
  Reference builtin(PyObject* name) const;

 private:
  Reference dictionary_;
  Reference builtins_;  ///< the dictionary of those that were there at load
};

}  // namespace receiver
