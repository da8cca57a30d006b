/// What host::Object means by the interpreter's objects.

#include <array>
#include <cassert>
#include <string>

#include "host/receiver/Function.h"

namespace host {

using receiver::borrowed;
using receiver::checked;
using receiver::interned;
using receiver::pointer;

namespace {

/// The arguments of a call as the interpreter takes them: up to seven, and an object in front.
class Pointers {
 public:
  Pointers(const Object& first, Arguments arguments) {
    assert(arguments.size() < pointers_.size());
    pointers_[0] = pointer(first);
    std::size_t named = 0;
    for (const Argument& argument : arguments) {
      pointers_[++count_] = pointer(argument.value);
      if (argument.keyword) ++named;
    }
    if (named > 0) takeNames(arguments, named);
  }

  /// Of the arguments alone, and with the object in front.
  PyObject* const* arguments() const { return pointers_.data() + 1; }
  PyObject* const* withFirst() const { return pointers_.data(); }
  std::size_t positional() const { return count_ - named_; }
  PyObject* names() const { return named_ > 0 ? pointer(names_) : nullptr; }

 private:
  void takeNames(Arguments arguments, std::size_t named) {
    named_ = named;
    names_ = checked(PyTuple_New(static_cast<Py_ssize_t>(named)));
    Py_ssize_t at = 0;
    for (const Argument& argument : arguments) {
      if (!argument.keyword) continue;
      PyObject* const name = interned(*argument.keyword);
      Py_INCREF(name);
      PyTuple_SET_ITEM(pointer(names_), at++, name);
    }
  }

  std::array<PyObject*, 8> pointers_{};
  std::size_t count_ = 0;
  std::size_t named_ = 0;
  Object names_;
};

bool compared(const Object& left, const Object& right, int operation) {
  const Object result = checked(PyObject_RichCompare(pointer(left), pointer(right), operation));
  return result.isTrue();
}

}  // namespace

Object::Object(bool truth) : Object(borrowed(truth ? Py_True : Py_False)) {}

Object::Object(int number) : Object(checked(receiver::newInteger(number))) {}

Object::Object(Text text) : Object(borrowed(interned(text))) {}

Object::Object(std::string_view text) : Object(checked(receiver::newText(text))) {}

Object::Object(const Object& other) noexcept : handle_(other.handle_) {
  Py_XINCREF(static_cast<PyObject*>(handle_));
}

Object::~Object() {
  Py_XDECREF(static_cast<PyObject*>(handle_));
}

bool Object::isNone() const {
  return pointer(*this) == Py_None;
}

bool Object::isTrue() const {
  return checked(PyObject_IsTrue(pointer(*this))) == 1;
}

bool operator==(const Object& left, const Object& right) {
  return compared(left, right, Py_EQ);
}

bool operator==(const Object& left, std::string_view text) {
  if (const auto characters = left.characters()) return *characters == text;
  return left == Object(text);
}

bool operator<(const Object& left, const Object& right) {
  return compared(left, right, Py_LT);
}

bool operator>=(const Object& left, const Object& right) {
  return compared(left, right, Py_GE);
}

Object Object::get(Text name) const {
  return checked(PyObject_GetAttr(pointer(*this), interned(name)));
}

void Object::set(Text name, const Object& value) const {
  checked(PyObject_SetAttr(pointer(*this), interned(name), pointer(value)));
}

Object Object::operator()(Arguments arguments) const {
  const Pointers given({}, arguments);
  return checked(
      receiver::callObject(pointer(*this), given.arguments(), given.positional(), given.names()));
}

Object Object::call(Text name, Arguments arguments) const {
  const Pointers given(*this, arguments);
  return checked(receiver::callMethod(interned(name), given.withFirst(), given.positional() + 1,
                                      given.names()));
}

Object Object::item(const Object& key) const {
  return checked(PyObject_GetItem(pointer(*this), pointer(key)));
}

void Object::setItem(const Object& key, const Object& value) const {
  checked(PyObject_SetItem(pointer(*this), pointer(key), pointer(value)));
}

int Object::size() const {
  return static_cast<int>(checked(static_cast<int>(PyObject_Size(pointer(*this)))));
}

Object operator+(const Object& left, const Object& right) {
  return checked(PyNumber_Add(pointer(left), pointer(right)));
}

Object operator%(const Object& format, const Object& values) {
  return checked(PyNumber_Remainder(pointer(format), pointer(values)));
}

Object Object::str() const {
  return checked(PyObject_Str(pointer(*this)));
}

Object Object::escaped() const {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string bytes;
  if (!receiver::copyText(pointer(*this), bytes)) receiver::raisePending();
  std::string result;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      result += character;
    } else {
      result += std::string("\\x") + kDigits[byte >> 4U] + kDigits[byte & 0x0FU];
    }
  }
  return result;
}

bool Object::isIn(const Object& container) const {
  return checked(PySequence_Contains(pointer(container), pointer(*this))) == 1;
}

bool Object::contains(std::string_view part) const {
  if (const auto text = characters()) return text->find(part) != std::string_view::npos;
  return Object(part).isIn(*this);
}

bool Object::startsWith(std::string_view prefix) const {
  if (const auto text = characters()) return text->starts_with(prefix);
  return call("startswith"_t, {prefix}).isTrue();
}

bool Object::endsWith(std::string_view suffix) const {
  if (const auto text = characters()) return text->ends_with(suffix);
  return call("endswith"_t, {suffix}).isTrue();
}

bool Object::startsWith(const Object& prefix) const {
  const auto other = prefix.characters();
  return other ? startsWith(*other) : call("startswith"_t, {prefix}).isTrue();
}

bool Object::endsWith(const Object& suffix) const {
  const auto other = suffix.characters();
  return other ? endsWith(*other) : call("endswith"_t, {suffix}).isTrue();
}

void Object::append(const Object& item) const {
  if (PyList_CheckExact(pointer(*this))) {
    checked(PyList_Append(pointer(*this), pointer(item)));
  } else {
    call("append"_t, {item});
  }
}

std::optional<std::string_view> Object::characters() const {
  return receiver::charactersOf(pointer(*this));
}

Object list(Arguments items) {
  Object made = checked(PyList_New(0));
  for (const Argument& item : items) made.append(item.value);
  return made;
}

Object tuple(Arguments items) {
  Object made = checked(PyTuple_New(static_cast<Py_ssize_t>(items.size())));
  Py_ssize_t at = 0;
  for (const Argument& item : items) {
    PyObject* const object = pointer(item.value);
    Py_INCREF(object);
    PyTuple_SET_ITEM(pointer(made), at++, object);
  }
  return made;
}

Object dictionary(std::initializer_list<std::pair<Object, Object>> items) {
  Object made = checked(PyDict_New());
  for (const auto& [key, value] : items) made.setItem(key, value);
  return made;
}

Items::Items(const Object& object) : iterator_(checked(PyObject_GetIter(pointer(object)))) {}

Items::Iterator& Items::Iterator::operator++() {
  item_ = Object::steal(PyIter_Next(pointer(iterator_)));
  done_ = !item_.handle();
  if (done_ && PyErr_Occurred()) receiver::raisePending();
  return *this;
}

bool Error::is(Text name) const {
  const Object type = receiver::builtins().item(name);
  return PyErr_GivenExceptionMatches(pointer(exception_.item(0)), pointer(type)) != 0;
}

}  // namespace host
