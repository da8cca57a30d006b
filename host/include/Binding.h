#pragma once

#include <string_view>

namespace host {

/// A name that the module takes from a unit of its host when it is loaded. The name "*" stands for
/// every public name of the unit; "builtins" is the unit of the built-in names.
struct Binding {
  std::string_view unit;
  std::string_view name;
  std::string_view bound_as;  ///< the name that it is bound under

  friend bool operator==(const Binding&, const Binding&) = default;
};

}  // namespace host
