#pragma once

#include <array>
#include <span>
#include <string_view>

#include "host/receiver/Instance.h"
#include "host/receiver/Members.h"

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
  const MadeClass* type = nullptr;  ///< the operation's class; null for a function
  PyObject* self = nullptr;         ///< null for a function
  void* object = nullptr;           ///< the C++ object of `self`; null for functions, constructors
  std::array<Reference, 3> arguments = {};  ///< one for each parameter
};

/// An operation of a class, or a function of the module.
struct Operation {
  const char* name;
  Reference (*run)(const Call& call);
  Parameter parameters[3] = {};
};

/// What can be done with the data members of one type.
struct MemberType {
  Reference (*get)(const Module& module, const void* member);
  void (*set)(const Module& module, void* member, PyObject* value);
  int (*traverse)(const void* member, visitproc visit, void* arg);
};

template <class T>
constexpr MemberType kMemberType = {
    .get = [](const Module& module,
              const void* member) { return fromMember(module, *static_cast<const T*>(member)); },
    .set = [](const Module& module, void* member,
              PyObject* value) { toMember(module, *static_cast<T*>(member), value); },
    .traverse =
        [](const void* member, visitproc visit, void* arg) {
          return traverseMember(*static_cast<const T*>(member), visit, arg);
        },
};

/// An attribute of a class: a data member of the C++ object.
struct Attribute {
  const char* name;
  void* (*member)(void* object);
  const MemberType* type;
};

/// What the interpreter sees of a C++ class.
struct Class {
  const char* name;
  Operation constructor;
  std::span<const Operation> operations;
  std::span<const Attribute> attributes;
  const std::string_view* skin = nullptr;  ///< the class attribute of that name, null for none
};

/// Returns a new class of the interpreter, derived from `base`.
const MadeClass& makeClass(Module& module, const Class& table, const Reference& base);

/// Returns a new function of the interpreter.
Reference makeFunction(Module& module, const Operation& function);

/// Returns whether `method` is the module's own operation `name`, bound to an object.
bool isOperation(PyObject* method, std::string_view name);

/// Returns an argument of a call as the parameter type `T` takes it.
template <class T>
std::decay_t<T> argument(const Call& call, std::size_t index) {
  return fromArgument<std::decay_t<T>>(call.module, call.arguments[index].get());
}

template <class T>
struct MemberPointer;

template <class Owner_, class Result_, class... Arguments_>
struct MemberPointer<Result_ (Owner_::*)(Arguments_...)> {
  using Owner = Owner_;

  template <auto Member, std::size_t... I>
  static Reference run(const Call& call, std::index_sequence<I...>) {
    Owner& object = *static_cast<Owner*>(call.object);
    if constexpr (std::is_void_v<Result_>) {
      (object.*Member)(argument<Arguments_>(call, I)...);
      return Reference::borrow(Py_None);
    } else {
      return toObject((object.*Member)(argument<Arguments_>(call, I)...));
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
  using Type = Type_;
};

/// Describes the operation that is the member function `Member`.
template <auto Member, class... Parameters>
constexpr Operation operation(const char* name, Parameters... parameters) {
  return {name, &MemberPointer<decltype(Member)>::template run<Member>, {parameters...}};
}

/// Describes the attribute that is the data member `Member`.
template <auto Member>
constexpr Attribute member(const char* name) {
  using Pointer = MemberPointer<decltype(Member)>;
  return {name,
          [](void* object) -> void* {
            return &(static_cast<typename Pointer::Owner*>(object)->*Member);
          },
          &kMemberType<typename Pointer::Type>};
}

}  // namespace receiver
