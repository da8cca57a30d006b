#pragma once

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/include/Value.h"
#include "host/receiver/Errors.h"

namespace receiver {

/// Return a new object of the interpreter for a C++ value. Raise what making it raises. The items
/// of a list that are lists themselves become tuples.
Reference toObject(const Reference& object);
Reference toObject(bool truth);
Reference toObject(int number);
Reference toObject(const char* text);
Reference toObject(std::string_view text);
Reference toObject(const std::string& text);
Reference toObject(const std::optional<std::string>& text);  ///< nothing: None
Reference toObject(const std::vector<std::string>& texts);
Reference toObject(const host::Value& value);
Reference toObject(const host::Value::List& values);
Reference toObject(const host::ObjectRef& object);  ///< null: None

/// Returns a new list of what `convert` makes of each item.
template <class Items, class Convert>
Reference toList(const Items& items, Convert convert) {
  Reference list = checked(PyList_New(0));
  for (const auto& item : items) checked(PyList_Append(list.get(), convert(item).get()));
  return list;
}

/// Returns the bytes of a text. Raises TypeError for any other object.
std::string textOf(PyObject* object);

/// Returns the texts of an iterable. Raises TypeError when it is none or holds anything else.
std::vector<std::string> textsOf(PyObject* object);

/// Returns whether the objects compare equal, as the interpreter compares them.
bool equal(PyObject* object, PyObject* other);

/// Returns whether the object counts as true.
bool truthOf(PyObject* object);

/// Returns an integer. Raises TypeError or OverflowError when it is none.
long long integerOf(PyObject* object);

/// Returns `object` as a value: None, truth values, numbers, texts, lists and tuples as such,
/// anything else, also a list within a list, as an object that compares as the interpreter compares
/// it.
host::Value valueOf(PyObject* object);

/// Returns `object` as the row of a list: it and the texts in it may be of derived classes.
host::Value rowOf(PyObject* object);

/// Returns `object` for the module to keep; null for None.
host::ObjectRef objectRef(const Reference& object);

/// Calls `visit` for the objects that `value` alone holds, as tp_traverse has to.
int traverse(const host::Value& value, visitproc visit, void* arg);

/// A name in the source, as the argument of a template.
template <std::size_t Size>
struct Literal {
  constexpr Literal(const char (&text)[Size]) { std::copy_n(text, Size, value); }
  char value[Size]{};
};

/// Returns a new text of which there is one, never freed.
PyObject* newName(const char* name);

/// Returns a name in the source as the interpreter's text. It is made once.
template <Literal name>
PyObject* named() {
  static PyObject* text = nullptr;
  if (!text) text = newName(name.value);
  return text;
}

/// Return an attribute, and set it. Raise what the object raises.
template <Literal name>
Reference attribute(PyObject* object) {
  return checked(PyObject_GetAttr(object, named<name>()));
}

template <Literal name>
Reference attribute(const Reference& object) {
  return attribute<name>(object.get());
}

template <Literal name>
void setAttribute(PyObject* object, const Reference& value) {
  checked(PyObject_SetAttr(object, named<name>(), value.get()));
}

/// Returns a name of an operation, a setting or a widget as the interpreter's text. There are few
/// of them, so each is kept.
PyObject* keptName(std::string_view name);

Reference attribute(PyObject* object, std::string_view name);
void setAttribute(PyObject* object, std::string_view name, const Reference& value);

/// The arguments of a call, up to eight: the positional ones, then those that it passes by name.
class Arguments {
 public:
  template <class T>
  Arguments& add(const T& value) {
    values_[count_++] = toObject(value);
    return *this;
  }

  template <Literal name, class T>
  Arguments& add(const T& value) {
    names_[named_++] = named<name>();
    return add(value);
  }

  /// Calls `callable` with them. Raises what it raises.
  Reference passTo(const Reference& callable) const;

 private:
  std::array<Reference, 8> values_;
  std::array<PyObject*, 8> names_{};
  std::size_t count_ = 0;
  std::size_t named_ = 0;
};

/// Calls `callable`, or the operation `name` of the first argument, with up to seven arguments.
Reference callDirectly(const Reference& callable, std::initializer_list<Reference> arguments);
Reference callNamed(PyObject* name, std::initializer_list<Reference> arguments);

/// Calls `callable` with positional arguments.
template <class... Arguments>
Reference call(const Reference& callable, const Arguments&... arguments) {
  return callDirectly(callable, {toObject(arguments)...});
}

/// Calls the operation `name` of `object`.
template <Literal name, class... Arguments>
Reference invoke(const Reference& object, const Arguments&... arguments) {
  return callNamed(named<name>(), {object, toObject(arguments)...});
}

}  // namespace receiver
