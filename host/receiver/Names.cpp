#include "Names.h"

#include <vector>

namespace receiver {
namespace {

[[noreturn]] void raiseNameError(const char* name) {
  PyErr_Format(PyExc_NameError, "name '%.200s' is not defined", name);
  raisePending();
}

/// Returns the names that "import *" takes from a unit.
std::vector<std::string> publicNames(const Reference& unit) {
  if (PyObject_HasAttrString(unit.get(), "__all__")) {
    return textsOf(attribute(unit, "__all__").get());
  }
  const Reference names = invoke(attribute(unit, "__dict__"), "keys");
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
    set(bound_as.c_str(), builtin(name.c_str()));
    return;
  }
  const Reference unit = checked(PyImport_ImportModule(std::string(binding.unit).c_str()));
  if (name == "*") {
    for (const std::string& each : publicNames(unit)) set(each.c_str(), imported(unit, each));
  } else {
    set(bound_as.c_str(), imported(unit, name));
  }
}

Reference Names::get(const char* name) const {
  PyObject* found = PyDict_GetItemString(dictionary_.get(), name);
  if (!found) raiseNameError(name);
  return Reference::borrow(found);
}

void Names::set(const char* name, const Reference& object) const {
  checked(PyDict_SetItemString(dictionary_.get(), name, object.get()));
}

Reference builtin(const char* name) {
  const Reference builtins = checked(PyImport_ImportModule(kBuiltins));
  Reference found = Reference::steal(PyObject_GetAttrString(builtins.get(), name));
  if (found) return found;
  PyErr_Clear();
  raiseNameError(name);
}

}  // namespace receiver
