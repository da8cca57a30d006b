#include "Names.h"

#include <vector>

namespace receiver {
namespace {

[[noreturn]] void raiseNameError(PyObject* name) {
  PyErr_Format(PyExc_NameError, "name '%.200s' is not defined", textOf(name).c_str());
  raisePending();
}

/// Returns a unit, imported if it is not yet. Many names come from few units: one that is there
/// needs no import machinery.
Reference unitNamed(const std::string& name) {
  PyObject* const loaded = PyDict_GetItemString(PyImport_GetModuleDict(), name.c_str());
  if (loaded && loaded != Py_None) return Reference::borrow(loaded);
  return checked(PyImport_ImportModule(name.c_str()));
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
Reference imported(const Reference& unit, const std::string& name) {
  Reference found = Reference::steal(PyObject_GetAttrString(unit.get(), name.c_str()));
  if (found) return found;
  if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
    PyErr_Format(PyExc_ImportError, "cannot import name '%.200s'", name.c_str());
  }
  raisePending();
}

}  // namespace

void Names::bind(const host::Binding& binding) {
  const std::string name(binding.name);
  const std::string bound_as(binding.bound_as);
  if (binding.unit == "builtins") {
    set(bound_as.c_str(), builtin(toObject(name).get()));
    return;
  }
  const Reference unit = unitNamed(std::string(binding.unit));
  if (name == "*") {
    for (const std::string& each : publicNames(unit)) set(each.c_str(), imported(unit, each));
  } else {
    set(bound_as.c_str(), imported(unit, name));
  }
}

Reference Names::get(PyObject* name) const {
  PyObject* const found = PyDict_GetItem(dictionary_.get(), name);
  if (!found) raiseNameError(name);
  return Reference::borrow(found);
}

void Names::set(const char* name, const Reference& object) const {
  checked(PyDict_SetItemString(dictionary_.get(), name, object.get()));
}

Reference builtin(PyObject* name) {
  PyObject* const found = PyDict_GetItem(PyEval_GetBuiltins(), name);
  if (!found) raiseNameError(name);
  return Reference::borrow(found);
}

}  // namespace receiver
