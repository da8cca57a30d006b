/// The module in the interpreter: its names, and the entry point through which it is loaded.

#include "host/include/Module.h"

#include <string>

#include "host/receiver/Function.h"
#include "plugin/src/Setup.h"

namespace host {

using receiver::borrowed;
using receiver::builtins;
using receiver::checked;
using receiver::interned;
using receiver::pointer;

namespace {

Object found(PyObject* dictionary, PyObject* name) {
  Object object = borrowed(receiver::dictionaryItem(dictionary, name));
  if (!object.handle() && PyErr_Occurred()) receiver::raisePending();
  return object;
}

/// Returns the characters of a name for a message.
const char* shown(PyObject* name) {
  const auto characters = Object(borrowed(name)).characters();
  return characters ? characters->data() : "?";
}

/// Returns what a name is bound to in `names` or, failing that, among the built-in ones.
Object lookedUp(const Object& names, PyObject* name) {
  Object object = found(pointer(names), name);
  if (!object.handle()) object = found(pointer(builtins()), name);
  if (!object.handle()) {
    PyErr_Format(PyExc_NameError, "name '%.200s' is not defined", shown(name));
    receiver::raisePending();
  }
  return object;
}

/// Binds `name` of a unit as the statement "from unit import name as bound_as" does. Many names
/// come from few units: one that is there needs no import machinery.
void import(const Object& names, PyObject* unit, PyObject* name, PyObject* bound_as) {
  const Object loaded = borrowed(receiver::dictionaryItem(PyImport_GetModuleDict(), unit));
  Object object =
      Object::steal(loaded.handle() ? PyObject_GetAttr(pointer(loaded), name) : nullptr);
  if (!object.handle()) {
    PyErr_Clear();
    const Object whole = checked(PyImport_Import(unit));
    object = Object::steal(PyObject_GetAttr(pointer(whole), name));
  }
  if (!object.handle()) {
    if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
      PyErr_Format(PyExc_ImportError, "cannot import name '%.200s'", shown(name));
    }
    receiver::raisePending();
  }
  checked(PyDict_SetItem(pointer(names), bound_as, pointer(object)));
}

/// Binds what "from unit import *" does.
void importAll(const Object& names, const Object& unit) {
  const Object whole = checked(PyImport_Import(pointer(unit)));
  const Object content = whole["__dict__"_t];
  const bool listed = Object("__all__"_t).isIn(content);
  for (const Object& name : Items(listed ? whole["__all__"_t] : content.call("keys"_t, {}))) {
    if (!listed && name.startsWith("_"_t)) continue;
    names.setItem(name, checked(PyObject_GetAttr(pointer(whole), pointer(name))));
  }
}

}  // namespace

Object Module::operator[](Text name) const {
  return lookedUp(names_, interned(name));
}

void Module::bind(const Binding& binding) const {
  const std::string_view unit = binding.unit;
  const Object name = checked(receiver::internedText(binding.name));
  const Object bound_as = checked(receiver::internedText(binding.bound_as));
  if (unit == std::string_view("builtins")) {
    names_.setItem(bound_as, lookedUp(builtins(), pointer(name)));
  } else if (name == std::string_view("*")) {
    importAll(names_, unit);
  } else {
    import(names_, pointer(Object(unit)), pointer(name), pointer(bound_as));
  }
}

void Module::define(const Operation& function) const {
  names_.setItem(std::string_view(function.name), receiver::newFunction(*this, function, false));
}

void Module::define(const Class& type) const {
  const Object content = dictionary({{"__module__"_t, names_.item("__name__"_t)},
                                     {"__doc__"_t, std::string_view(type.documentation)}});
  if (type.skin) content.setItem("skin"_t, std::string_view(type.skin));
  for (const Operation& operation : type.operations) {
    content.setItem(std::string_view(operation.name),
                    receiver::newFunction(*this, operation, true));
  }
  const Object base = type.base ? (*this)[*type.base] : (*this)["object"_t];
  const Object metaclass = borrowed(reinterpret_cast<PyObject*>(Py_TYPE(pointer(base))));
  names_.setItem(std::string_view(type.name),
                 metaclass({std::string_view(type.name), tuple({base}), content}));
}

}  // namespace host

namespace receiver {
namespace {

#define TEXT_OF(number) #number
#define VERSION(major, minor) TEXT_OF(major) "." TEXT_OF(minor)
#define BUILT_FOR VERSION(PY_MAJOR_VERSION, PY_MINOR_VERSION)

/// Raises ImportError in an interpreter of another version than that of the headers: its objects
/// are laid out otherwise.
void checkVersion() {
  const std::string_view running = Py_GetVersion();
  const std::size_t end = std::string_view(BUILT_FOR).size();
  if (running.starts_with(BUILT_FOR) && (running[end] < '0' || running[end] > '9')) return;
  // scripts/stage looks for this text.
  PyErr_Format(PyExc_ImportError, "Stowline.so is built for Python " BUILT_FOR ", this is %s",
               std::string(running.substr(0, running.find(' '))).c_str());
  raisePending();
}

/// Loads the module into `object`. Returns -1 with the error set when that fails.
int load(PyObject* object) {
  try {
    checkVersion();
    // Never freed: the classes refer to it, and the GUI never unloads a module.
    stowline::load(*new host::Module(borrowed(PyModule_GetDict(object))));
    return 0;
  } catch (...) {
    setPending();
    return -1;
  }
}

}  // namespace
}  // namespace receiver

// PyMODINIT_FUNC of older versions leaves a function hidden where that is the default.
#define EXPORTED extern "C" __attribute__((visibility("default")))

#if PY_MAJOR_VERSION >= 3

EXPORTED PyObject* PyInit_Stowline() {
  static PyModuleDef_Slot slots[] = {{Py_mod_exec, reinterpret_cast<void*>(&receiver::load)},
                                     {0, nullptr}};
  static PyModuleDef definition = {
      PyModuleDef_HEAD_INIT, "Stowline", nullptr, 0, nullptr, slots, nullptr, nullptr, nullptr};
  return PyModuleDef_Init(&definition);
}

#else

EXPORTED void initStowline() {
  static PyMethodDef none[] = {{nullptr, nullptr, 0, nullptr}};
  PyObject* const object = Py_InitModule("Stowline", none);
  if (!object || receiver::load(object) == 0) return;
  // Left there, a module that failed to load would be found by the next import.
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* traceback = nullptr;
  PyErr_Fetch(&type, &value, &traceback);
  PyDict_DelItemString(PyImport_GetModuleDict(), "Stowline");
  PyErr_Restore(type, value, traceback);
}

#endif
