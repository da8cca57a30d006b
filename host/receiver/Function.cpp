#include "host/receiver/Function.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

namespace receiver {
namespace {

using host::Operation;
using host::Parameter;

/// An operation or a function of the module as the interpreter calls it.
struct Function {
  PyObject_HEAD const Operation* operation;
  const host::Module* module;
  bool is_method;
};

const Function& functionOf(PyObject* object) {
  return *reinterpret_cast<Function*>(object);
}

[[noreturn]] void raiseTypeError(const Operation& operation, const char* problem,
                                 const char* name = "") {
  PyErr_Format(PyExc_TypeError, "%s() %s%s", operation.name, problem, name);
  raisePending();
}

/// The arguments of one call, by the parameters of the operation.
class Bound {
 public:
  /// Raises TypeError when they do not fit. `positional` does not hold the object.
  Bound(const Operation& operation, PyObject* positional, Py_ssize_t skipped, PyObject* keywords) {
    Py_ssize_t given = PyTuple_GET_SIZE(positional) - skipped;
    Py_ssize_t named = keywords ? PyDict_Size(keywords) : 0;
    for (std::size_t i = 0; i < arguments_.size() && operation.parameters[i].name; ++i) {
      const Parameter& parameter = operation.parameters[i];
      PyObject* const by_name =
          named > 0 ? PyDict_GetItemString(keywords, parameter.name) : nullptr;
      if (given > 0) {
        arguments_[i] =
            borrowed(PyTuple_GET_ITEM(positional, skipped + static_cast<Py_ssize_t>(i)));
        --given;
      } else if (by_name) {
        arguments_[i] = borrowed(by_name);
        --named;
      } else if (parameter.default_value) {
        arguments_[i] = host::defaultOf(parameter);
      } else {
        raiseTypeError(operation, "is called without its argument ", parameter.name);
      }
    }
    if (given > 0) raiseTypeError(operation, "is called with too many arguments");
    if (named > 0) raiseTypeError(operation, "is called with an unknown or a repeated keyword");
  }

  const Object* data() const { return arguments_.data(); }

 private:
  std::array<Object, 3> arguments_;
};

/// How far operations that run within each other may take one thread's stack, in bytes. A thread
/// may have as little as 256 KiB (threading.stack_size), of which the interpreter's own calls take
/// some; the process's first one has megabytes.
constexpr std::ptrdiff_t kDeepest = 96 * 1024;
constexpr std::ptrdiff_t kDeepestOfFirst = 1024 * 1024;

/// What tells the process's first thread from others; null when another one has loaded the module.
const void* const kFirstThread =
    syscall(SYS_gettid) == getpid() ? __builtin_thread_pointer() : nullptr;

/// Where the outermost operation of each thread that runs one began on its stack.
class StackUse {
 public:
  /// Raises RecursionError when there is not enough left.
  StackUse() {
    const char* const here = static_cast<const char*>(__builtin_frame_address(0));
    for (Outermost& each : outermost_) {
      if (each.thread != __builtin_thread_pointer()) continue;
      if (each.address - here > each.deepest) {
        PyErr_SetString(recursionError(), "operations are nested too deeply");
        raisePending();
      }
      return;
    }
    const bool is_first = __builtin_thread_pointer() == kFirstThread;
    outermost_.push_back({__builtin_thread_pointer(), here, is_first ? kDeepestOfFirst : kDeepest});
    is_outermost_ = true;
  }
  ~StackUse() {
    if (!is_outermost_) return;
    std::erase_if(outermost_,
                  [](const Outermost& each) { return each.thread == __builtin_thread_pointer(); });
  }
  StackUse(const StackUse&) = delete;
  StackUse& operator=(const StackUse&) = delete;

 private:
  struct Outermost {
    void* thread;
    const char* address;
    std::ptrdiff_t deepest;
  };
  static inline std::vector<Outermost> outermost_;
  bool is_outermost_ = false;
};

PyObject* callFunction(PyObject* object, PyObject* positional, PyObject* keywords) {
  try {
    const StackUse use;
    const Function& function = functionOf(object);
    const Py_ssize_t skipped = function.is_method ? 1 : 0;
    if (PyTuple_GET_SIZE(positional) < skipped)
      raiseTypeError(*function.operation, "is called without its object");
    const Bound arguments(*function.operation, positional, skipped, keywords);
    const Object self = function.is_method ? borrowed(PyTuple_GET_ITEM(positional, 0)) : Object();
    Object result = function.operation->run({*function.module, self, arguments.data()});
    if (!result.handle()) result = borrowed(Py_None);
    return static_cast<PyObject*>(result.release());
  } catch (...) {
    setPending();
    return nullptr;
  }
}

PyObject* bindFunction(PyObject* function, PyObject* object, PyObject* /*type*/) {
  if (object && object != Py_None) return boundMethod(function, object);
  Py_INCREF(function);
  return function;
}

PyObject* nameOfFunction(PyObject* function, void* /*closure*/) {
  return newText(functionOf(function).operation->name);
}

PyObject* moduleOfFunction(PyObject* /*function*/, void* /*closure*/) {
  return newText("Stowline");
}

PyObject* documentationOfFunction(PyObject* function, void* /*closure*/) {
  return newText(functionOf(function).operation->documentation);
}

/// Returns an inspect.Signature: that of a function with the same parameters.
PyObject* signatureOfFunction(PyObject* object, void* /*closure*/) {
  try {
    const Function& function = functionOf(object);
    std::string source = function.is_method ? "lambda self" : "lambda";
    const char* separator = function.is_method ? ", " : " ";
    for (const Parameter& parameter : function.operation->parameters) {
      if (!parameter.name) break;
      source += separator + std::string(parameter.name);
      separator = ", ";
      if (parameter.default_value) source += std::string("=") + parameter.default_value;
    }
    using host::operator""_t;
    const Object same = builtins().item("eval"_t)({source + ": None"});
    const Object inspect = checked(PyImport_ImportModule("inspect"));
    return static_cast<PyObject*>(inspect["signature"_t]({same}).release());
  } catch (...) {
    setPending();
    return nullptr;
  }
}

PyGetSetDef kAttributes[] = {
    {const_cast<char*>("__name__"), &nameOfFunction, nullptr, nullptr, nullptr},
    {const_cast<char*>("__module__"), &moduleOfFunction, nullptr, nullptr, nullptr},
    {const_cast<char*>("__doc__"), &documentationOfFunction, nullptr, nullptr, nullptr},
    {const_cast<char*>("__signature__"), &signatureOfFunction, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

PyTypeObject* functionType() {
  static PyTypeObject type{};
  static bool is_ready = false;
  if (is_ready) return &type;
  keepType(type);
  type.tp_name = "Stowline.function";
  type.tp_basicsize = sizeof(Function);
  type.tp_flags = Py_TPFLAGS_DEFAULT;
  type.tp_dealloc = [](PyObject* object) { PyObject_Free(object); };
  type.tp_call = &callFunction;
  type.tp_descr_get = &bindFunction;
  type.tp_getset = kAttributes;
  checked(PyType_Ready(&type));
  is_ready = true;
  return &type;
}

}  // namespace

Object newFunction(const host::Module& module, const Operation& operation, bool is_method) {
  Function* const made = PyObject_New(Function, functionType());
  Object function = checked(reinterpret_cast<PyObject*>(made));
  made->operation = &operation;
  made->module = &module;
  made->is_method = is_method;
  return function;
}

const Object& builtins() {
  static const Object& dictionary = *new Object(borrowed(PyEval_GetBuiltins()));
  return dictionary;
}

}  // namespace receiver
