#include "Names.h"

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

/// Returns a unit, imported if it is not yet. Many names come from few units: one that is there
/// needs no import machinery.
Reference unitNamed(std::string_view name) {
  const Reference text = toObject(name);
  PyObject* const loaded = dictionaryItem(PyImport_GetModuleDict(), text.get());
  if (loaded && loaded != Py_None) return Reference::borrow(loaded);
  return checked(PyImport_Import(text.get()));
}

/// Returns the names that "import *" takes from a unit.
std::vector<std::string> publicNames(const Reference& unit) {
  const Reference content = attribute<"__dict__">(unit);
  if (PyMapping_HasKeyString(content.get(), const_cast<char*>("__all__")) == 1) {
    return textsOf(attribute<"__all__">(unit).get());
  }
  const Reference names = invoke<"keys">(content);
  std::vector<std::string> result = textsOf(names.get());
  std::erase_if(result, [](const std::string& name) { return name.starts_with('_'); });
  return result;
}

/// Returns `name` of `unit` as the statement "from unit import name" finds it.
Reference imported(const Reference& unit, const Reference& name) {
  Reference found = Reference::steal(PyObject_GetAttr(unit.get(), name.get()));
  if (found) return found;
  if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
    PyErr_Format(PyExc_ImportError, "cannot import name '%.200s'", textOf(name.get()).c_str());
  }
  raisePending();
}

}  // namespace

void Names::bind(const host::Binding& binding) {
  const Reference bound_as = interned(binding.bound_as);
  const Reference name = binding.name == binding.bound_as ? bound_as : interned(binding.name);
  if (binding.unit == "builtins") {
    set(bound_as, builtin(name.get()));
    return;
  }
  const Reference unit = unitNamed(binding.unit);
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

Reference builtin(PyObject* name) {
  return lookedUp(PyEval_GetBuiltins(), name);
}

}  // namespace receiver
