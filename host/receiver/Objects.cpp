#include "host/receiver/Objects.h"

#include <array>
#include <forward_list>
#include <memory>
#include <unordered_map>
#include <utility>

namespace receiver {
namespace {

/// Any object of the interpreter that has no counterpart among the values: the one class of objects
/// that this host makes.
struct Held : host::Object {
  explicit Held(Reference object_) : object(std::move(object_)) {}

  bool equalsTrue() const override { return equal(object.get(), Py_True); }
  std::string str() const override { return textOf(checked(textForm(object.get())).get()); }

  Reference object;
};

host::Value integerValue(PyObject* object) {
  int overflow = 0;
  const long long number = PyLong_AsLongLongAndOverflow(object, &overflow);
  if (overflow != 0) return objectRef(Reference::borrow(object));
  if (number == -1 && PyErr_Occurred()) raisePending();
  return number;
}

/// Looks into no list: a list may hold itself. What is of a derived class stays an object: it may
/// compare otherwise.
host::Value itemValue(PyObject* object) {
  if (object == Py_None) return {};
  if (PyBool_Check(object)) return object == Py_True;
  if (isPlainInteger(object)) return integerValue(object);
  if (isPlainText(object)) return textOf(object);
  return objectRef(Reference::borrow(object));
}

/// Takes any text as one.
host::Value cellValue(PyObject* object) {
  return isText(object) ? textOf(object) : itemValue(object);
}

host::Value listValue(PyObject* object, host::Value (*convert)(PyObject* item)) {
  const Reference items = checked(PySequence_Fast(object, "not a list"));
  host::Value::List values;
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.get()); ++i) {
    values.push_back(convert(PySequence_Fast_GET_ITEM(items.get(), i)));
  }
  return values;
}

Reference integerObject(long long number) {
  const bool fits = std::in_range<long>(number);
  return checked(fits ? newInteger(static_cast<long>(number)) : PyLong_FromLongLong(number));
}

Reference tupleOf(const host::Value::List& values) {
  Reference tuple = checked(PyTuple_New(static_cast<Py_ssize_t>(values.size())));
  for (std::size_t i = 0; i < values.size(); ++i) {
    PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), toObject(values[i]).release());
  }
  return tuple;
}

/// The arguments of a call as the interpreter takes them.
class Pointers {
 public:
  template <class References>
  explicit Pointers(const References& arguments) {
    std::ranges::transform(arguments, pointers_.begin(), &Reference::get);
  }
  PyObject* const* data() const { return pointers_.data(); }

 private:
  std::array<PyObject*, 8> pointers_{};
};

}  // namespace

Reference toObject(const Reference& object) {
  return object;
}

Reference toObject(bool truth) {
  return Reference::borrow(truth ? Py_True : Py_False);
}

Reference toObject(int number) {
  return checked(newInteger(number));
}

Reference toObject(const char* text) {
  return toObject(std::string_view(text));
}

Reference toObject(std::string_view text) {
  return checked(newText(text));
}

Reference toObject(const std::string& text) {
  return toObject(std::string_view(text));
}

Reference toObject(const std::optional<std::string>& text) {
  return text ? toObject(*text) : Reference::borrow(Py_None);
}

Reference toObject(const std::vector<std::string>& texts) {
  return toList(texts, [](const std::string& text) { return toObject(text); });
}

Reference toObject(const host::Value& value) {
  if (const bool* truth = value.truth()) return toObject(*truth);
  if (const long long* integer = value.integer()) return integerObject(*integer);
  if (const double* number = value.number()) return checked(PyFloat_FromDouble(*number));
  if (const std::string* text = value.text()) return toObject(*text);
  if (const host::Value::List* list = value.list()) return toObject(*list);
  return toObject(value.object());
}

Reference toObject(const host::ObjectRef& object) {
  return object ? static_cast<const Held&>(*object).object : Reference::borrow(Py_None);
}

Reference toObject(const host::Value::List& values) {
  return toList(values, [](const host::Value& value) {
    return value.list() ? tupleOf(*value.list()) : toObject(value);
  });
}

std::string textOf(PyObject* object) {
  if (!isText(object)) {
    PyErr_Format(PyExc_TypeError, "a string is required, not %.200s", Py_TYPE(object)->tp_name);
    raisePending();
  }
  std::string bytes;
  if (!copyText(object, bytes)) raisePending();
  return bytes;
}

std::vector<std::string> textsOf(PyObject* object) {
  if (isText(object)) {
    PyErr_SetString(PyExc_TypeError, "a list of strings is required, not a string");
    raisePending();
  }
  const Reference items = checked(PySequence_Fast(object, "a list of strings is required"));
  std::vector<std::string> texts;
  texts.reserve(static_cast<std::size_t>(PySequence_Fast_GET_SIZE(items.get())));
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.get()); ++i) {
    texts.push_back(textOf(PySequence_Fast_GET_ITEM(items.get(), i)));
  }
  return texts;
}

bool equal(PyObject* object, PyObject* other) {
  return checked(PyObject_RichCompareBool(object, other, Py_EQ)) == 1;
}

bool truthOf(PyObject* object) {
  return checked(PyObject_IsTrue(object)) == 1;
}

long long integerOf(PyObject* object) {
  const long long number = PyLong_AsLongLong(object);
  if (number == -1 && PyErr_Occurred()) raisePending();
  return number;
}

host::Value valueOf(PyObject* object) {
  const bool is_list = PyList_CheckExact(object) || PyTuple_CheckExact(object);
  return is_list ? listValue(object, &itemValue) : itemValue(object);
}

host::Value rowOf(PyObject* object) {
  const bool is_list = PyList_Check(object) || PyTuple_Check(object);
  return is_list ? listValue(object, &cellValue) : cellValue(object);
}

host::ObjectRef objectRef(const Reference& object) {
  return object.get() == Py_None ? nullptr : std::make_shared<Held>(object);
}

int traverse(const host::Value& value, visitproc visit, void* arg) {
  if (const host::Value::List* list = value.list()) {
    for (const host::Value& item : *list) {
      if (const int result = traverse(item, visit, arg)) return result;
    }
  }
  // Two owners: the value and this copy. What others share is not the value's alone to give up.
  const host::ObjectRef object = value.object();
  if (object.use_count() == 2) Py_VISIT(static_cast<const Held&>(*object).object.get());
  return 0;
}

PyObject* newName(const char* name) {
  return checked(internedText(name)).release();
}

PyObject* keptName(std::string_view name) {
  static std::forward_list<std::string> texts;
  static std::unordered_map<std::string_view, PyObject*> names;
  if (const auto found = names.find(name); found != names.end()) return found->second;
  const std::string& text = texts.emplace_front(name);
  return names.emplace(text, newName(text.c_str())).first->second;
}

Reference attribute(PyObject* object, std::string_view name) {
  return checked(PyObject_GetAttr(object, keptName(name)));
}

void setAttribute(PyObject* object, std::string_view name, const Reference& value) {
  checked(PyObject_SetAttr(object, keptName(name), value.get()));
}

Reference Arguments::passTo(const Reference& callable) const {
  Reference names;
  if (named_ > 0) names = checked(PyTuple_New(static_cast<Py_ssize_t>(named_)));
  for (std::size_t i = 0; i < named_; ++i) {
    PyTuple_SET_ITEM(names.get(), static_cast<Py_ssize_t>(i),
                     Reference::borrow(names_[i]).release());
  }
  return checked(
      callObject(callable.get(), Pointers(values_).data(), count_ - named_, names.get()));
}

Reference callDirectly(const Reference& callable, std::initializer_list<Reference> arguments) {
  return checked(callObject(callable.get(), Pointers(arguments).data(), arguments.size(), nullptr));
}

Reference callNamed(PyObject* name, std::initializer_list<Reference> arguments) {
  return checked(callMethod(name, Pointers(arguments).data(), arguments.size()));
}

}  // namespace receiver
