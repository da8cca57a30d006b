/// The entry point through which the interpreter loads the module.

#include <memory>
#include <string>
#include <string_view>

#include "host/receiver/Classes.h"
#include "plugin/src/Setup.h"

namespace receiver {
namespace {

Reference runGetBackupRestorePath(const Call& call) {
  return toObject(stowline::getBackupRestorePath(call.module.host));
}

Reference runGetDateTime(const Call& call) {
  return toObject(stowline::getDateTime(call.module.host));
}

constexpr Operation kFunctions[] = {
    {"getBackupRestorePath", &runGetBackupRestorePath},
    {"getDateTime", &runGetDateTime},
};

void define(Module& module) {
  const Names& names = module.host.names();
  for (const Operation& function : kFunctions) {
    names.set(toObject(function.name), makeFunction(module, function));
  }
  const auto add = [&](const Class& table, const Reference& base) -> const MadeClass& {
    const MadeClass& made = makeClass(module, table, base);
    names.set(toObject(table.name), made.type);
    return made;
  };
  const auto object = Reference::borrow(reinterpret_cast<PyObject*>(&PyBaseObject_Type));
  const Reference screen = names.get<"Screen">();
  module.engine = &add(kBackupActions, object);
  add(kStowlineHelpScreen, screen);
  add(kStowline, screen);
  add(kStowlineRestore, screen);
}

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
    auto module = std::make_unique<Module>(object);
    stowline::load(module->host);
    // Deliberately never freed: the classes refer to it, and the GUI never unloads a module.
    define(*module.release());
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
