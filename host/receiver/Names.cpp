#include "host/receiver/Names.h"

#include <vector>

namespace receiver {
namespace {

Reference lookedUp(PyObject* dictionary, PyObject* name) {
  PyObject* const found = dictionaryItem(dictionary, name);
  if (!found) {
    if (!PyErr_Occurred()) {
      PyErr_Format(PyExc_NameError, "name '%.200s' is not defined", textOf(name).c_str());
    }
    raisePending();
  }
  return Reference::borrow(found);
}

/// Returns a text that the interpreter compares at once with others like it.
Reference interned(std::string_view text) {
  return checked(internedText(std::string(text).c_str()));
}

/// Returns the names that "import *" takes from a unit.
std::vector<std::string> publicNames(const Reference& unit) {
  const Reference whole = checked(PyImport_Import(unit.get()));
  const Reference content = attribute<"__dict__">(whole);
  if (PyMapping_HasKeyString(content.get(), const_cast<char*>("__all__")) == 1) {
    return textsOf(attribute<"__all__">(whole).get());
  }
  const Reference names = invoke<"keys">(content);
  std::vector<std::string> result = textsOf(names.get());
  std::erase_if(result, [](const std::string& name) { return name.starts_with('_'); });
  return result;
}

/// Returns `name` of a unit that is loaded; nothing when that does not have it. Many names come
/// from few units: one that is there needs no import machinery.
Reference loaded(const Reference& unit, const Reference& name) {
  PyObject* const found = dictionaryItem(PyImport_GetModuleDict(), unit.get());
  Reference object = Reference::steal(found ? PyObject_GetAttr(found, name.get()) : nullptr);
  if (!object && PyErr_Occurred()) {
    if (!PyErr_ExceptionMatches(PyExc_AttributeError)) raisePending();
    PyErr_Clear();
  }
  return object;
}

/// Returns `name` of `unit` as the statement "from unit import name" finds it.
Reference imported(const Reference& unit, const Reference& name) {
  Reference found = loaded(unit, name);
  if (found) return found;
  const Reference whole = checked(PyImport_Import(unit.get()));
  found = Reference::steal(PyObject_GetAttr(whole.get(), name.get()));
  if (found) return found;
  if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
    PyErr_Format(PyExc_ImportError, "cannot import name '%.200s'", textOf(name.get()).c_str());
  }
  raisePending();
}

}  // namespace

Names::Names(PyObject* dictionary)
    : dictionary_(Reference::borrow(dictionary)),
      builtins_(Reference::borrow(PyEval_GetBuiltins())) {}

void Names::bind(const host::Binding& binding) {
  const Reference bound_as = interned(binding.bound_as);
  const Reference name = binding.name == binding.bound_as ? bound_as : interned(binding.name);
  if (binding.unit == "builtins") {
    set(bound_as, builtin(name.get()));
    return;
  }
  const Reference unit = toObject(binding.unit);
  if (binding.name != "*") {
    set(bound_as, imported(unit, name));
    return;
  }
  for (const std::string& each : publicNames(unit)) {
    const Reference public_name = interned(each);
    set(public_name, imported(unit, public_name));
  }
}

Reference Names::get(PyObject* name) const {
  return lookedUp(dictionary_.get(), name);
}

void Names::set(const Reference& name, const Reference& object) const {
  checked(PyDict_SetItem(dictionary_.get(), name.get(), object.get()));
}

Reference Names::builtin(PyObject* name) const {
  return lookedUp(builtins_.get(), name);
}

}  // namespace receiver
