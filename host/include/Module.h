#pragma once

#include <span>
#include <string_view>

#include "host/include/Object.h"

namespace host {

/// A name that the module takes from a unit of its host when it is loaded. The name "*" stands for
/// every public name of the unit; "builtins" is the unit of the built-in names.
struct Binding {
  const char* unit;
  const char* name;
  const char* bound_as;
};

struct Operation;
struct Class;

/// The module as its host has loaded it: the names that are bound in it.
class Module {
 public:
  /// `names`: the host's own object for them.
  explicit Module(Object names) : names_(std::move(names)) {}

  /// Returns what a name is bound to now, in the module or among the built-in names. Raises Error
  /// ("NameError").
  Object operator[](Text name) const;

  /// Bind a name of a unit, a function, and a class. Raise what the unit's loading raises, Error
  /// ("ImportError") when it lacks the name.
  void bind(const Binding& binding) const;
  void define(const Operation& function) const;
  void define(const Class& type) const;

 private:
  Object names_;
};

/// One call of an operation, or of a function of the module.
struct Call {
  const Module& module;
  const Object& self;       ///< the object; nothing for a function
  const Object* arguments;  ///< one for each parameter
};

struct Parameter {
  const char* name = nullptr;  ///< null: there is no such parameter
  const char* default_value =
      nullptr;  ///< as its language writes it: None, False, or a text in quotes
};

/// Returns what stands for an argument that is not given, of a parameter that has a default.
inline Object defaultOf(const Parameter& parameter) {
  const std::string_view written = parameter.default_value;
  if (written == std::string_view("None")) return {};
  if (written == std::string_view("False")) return false;
  return written.substr(1, written.size() - 2);
}

struct Operation {
  const char* name = nullptr;
  Object (*run)(const Call& call) = nullptr;
  Parameter parameters[3] = {};
  const char* documentation = nullptr;  ///< one line
};

/// A class of the module. Its attributes come into being as its operations set them.
struct Class {
  const char* name;
  std::optional<Text> base;  ///< the name of the class that it is derived from
  std::span<const Operation> operations;
  const char* documentation;
  const char* skin = nullptr;  ///< the class attribute of that name
};

}  // namespace host
