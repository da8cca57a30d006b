#pragma once

#include <span>

#include "Instance.h"
#include "Members.h"

namespace receiver {

/// What an operation takes where the caller gives nothing.
enum class Default { REQUIRED, NONE, FALSE };

struct Parameter {
  const char* name = nullptr;  ///< null: there is no such parameter
  Default value = Default::REQUIRED;
};

/// One call of an operation or a function from the interpreter.
struct Call {
  Module& module;
  PyObject* self = nullptr;     ///< null for a function
  void* object = nullptr;       ///< the C++ object of `self`; null for functions and constructors
  PyObject* arguments[3] = {};  ///< one for each parameter
};

/// An operation of a class, or a function of the module.
struct Operation {
  const char* name;
  Reference (*run)(const Call& call);
  Parameter parameters[3] = {};
};

/// An attribute of a class.
struct Attribute {
  const char* name;
  Reference (*get)(const Module& module, const void* object);
  void (*set)(const Module& module, void* object, PyObject* value);
  int (*traverse)(const void* object, visitproc visit, void* arg);
};

/// What the interpreter sees of a C++ class.
struct Class {
  const char* name;
  Operation constructor;
  std::span<const Operation> operations;
  std::span<const Attribute> attributes;
};

/// Returns a new class of the interpreter, derived from `base`.
Reference makeClass(Module& module, const Class& type, const Reference& base);

/// Returns a new function of the interpreter.
Reference makeFunction(Module& module, const Operation& function);

template <class T>
struct MemberPointer;

template <class Owner_, class Result_, class... Arguments_>
struct MemberPointer<Result_ (Owner_::*)(Arguments_...)> {
  using Owner = Owner_;

  template <auto Member, std::size_t... I>
  static Reference run(const Call& call, std::index_sequence<I...>) {
    Owner& object = *static_cast<Owner*>(call.object);
    if constexpr (std::is_void_v<Result_>) {
      (object.*Member)(fromArgument<std::decay_t<Arguments_>>(call.module, call.arguments[I])...);
      return Reference::borrow(Py_None);
    } else {
      return toObject((object.*Member)(
          fromArgument<std::decay_t<Arguments_>>(call.module, call.arguments[I])...));
    }
  }

  template <auto Member>
  static Reference run(const Call& call) {
    return run<Member>(call, std::index_sequence_for<Arguments_...>());
  }
};

template <class Owner_, class Type_>
struct MemberPointer<Type_ Owner_::*> {
  using Owner = Owner_;
};

/// Describes the operation that is the member function `Member`.
template <auto Member, class... Parameters>
constexpr Operation operation(const char* name, Parameters... parameters) {
  return {name, &MemberPointer<decltype(Member)>::template run<Member>, {parameters...}};
}

/// Describes the attribute that is the data member `Member`.
template <auto Member>
constexpr Attribute member(const char* name) {
  using Owner = typename MemberPointer<decltype(Member)>::Owner;
  return {name,
          [](const Module& module, const void* object) {
            return fromMember(module, static_cast<const Owner*>(object)->*Member);
          },
          [](const Module& module, void* object, PyObject* value) {
            toMember(module, static_cast<Owner*>(object)->*Member, value);
          },
          [](const void* object, visitproc visit, void* arg) {
            return traverseMember(static_cast<const Owner*>(object)->*Member, visit, arg);
          }};
}

}  // namespace receiver
