#include "host/receiver/Class.h"

#include <string>
#include <vector>

#include "host/receiver/Types.h"

namespace receiver {
namespace {

constexpr const char* kSlot = "_stowline";

/// An operation as the interpreter calls it. In a class it binds to an object as a function does.
struct Function {
  PyObject_HEAD const Operation* operation;
  const MadeClass* owner;  ///< null for a function of the module
  Module* module;
};

/// An attribute as the interpreter reads and sets it.
struct Descriptor {
  PyObject_HEAD const Attribute* attribute;
  const MadeClass* owner;
};

const Function& functionOf(PyObject* object) {
  return *reinterpret_cast<Function*>(object);
}

const Descriptor& descriptorOf(PyObject* object) {
  return *reinterpret_cast<Descriptor*>(object);
}

[[noreturn]] void raiseTypeError(const Operation& operation, const char* problem,
                                 const char* name = "") {
  PyErr_Format(PyExc_TypeError, "%s() %s%s", operation.name, problem, name);
  raisePending();
}

PyObject* defaultOf(const Operation& operation, const Parameter& parameter) {
  if (parameter.value == Default::NONE) return Py_None;
  if (parameter.value == Default::FALSE) return Py_False;
  raiseTypeError(operation, "is called without its argument ", parameter.name);
}

/// Fills the arguments of `call` from the positional ones after the first `skipped` and from the
/// keywords. Raises TypeError when they do not fit the operation.
void bindArguments(Call& call, const Operation& operation, PyObject* positional, Py_ssize_t skipped,
                   PyObject* keywords) {
  Py_ssize_t given = PyTuple_GET_SIZE(positional) - skipped;
  Py_ssize_t named = keywords ? PyDict_Size(keywords) : 0;
  for (std::size_t i = 0; i < std::size(operation.parameters); ++i) {
    const Parameter& parameter = operation.parameters[i];
    if (!parameter.name) break;
    PyObject* by_name = named > 0 ? PyDict_GetItemString(keywords, parameter.name) : nullptr;
    if (given > 0) {
      call.arguments[i] =
          Reference::borrow(PyTuple_GET_ITEM(positional, skipped + static_cast<Py_ssize_t>(i)));
      --given;
    } else if (by_name) {
      call.arguments[i] = Reference::borrow(by_name);
      --named;
    } else {
      call.arguments[i] = Reference::borrow(defaultOf(operation, parameter));
    }
  }
  if (given > 0) raiseTypeError(operation, "is called with too many arguments");
  if (named > 0) raiseTypeError(operation, "is called with an unknown or a repeated keyword");
}

Reference runOperation(const Function& function, Call& call) {
  if (!function.owner || function.operation == &function.owner->table.constructor) {
    return function.operation->run(call);
  }
  const AttachedInstance instance(call.self, *function.owner);
  const Self::Entered entered(instance->self(), call.self);
  call.object = instance->object();
  return function.operation->run(call);
}

/// Counts the calls that run within each other: one takes more of the stack than the interpreter's
/// own limit reckons with.
class Nested {
 public:
  Nested() {
    if (depth_ == kDeepest) {
      PyErr_SetString(recursionError(), "operations are nested too deeply");
      raisePending();
    }
    ++depth_;
  }
  ~Nested() { --depth_; }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

 private:
  static constexpr int kDeepest = 250;
  static inline int depth_ = 0;
};

PyObject* callFunction(PyObject* object, PyObject* positional, PyObject* keywords) {
  try {
    const Nested nested;
    const Function& function = functionOf(object);
    const Py_ssize_t skipped = function.owner ? 1 : 0;
    if (PyTuple_GET_SIZE(positional) < skipped) {
      raiseTypeError(*function.operation, "is called without its object");
    }
    Call call{.module = *function.module, .type = function.owner};
    if (skipped == 1) call.self = PyTuple_GET_ITEM(positional, 0);
    bindArguments(call, *function.operation, positional, skipped, keywords);
    return runOperation(function, call).release();
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

PyObject* getAttribute(PyObject* descriptor, PyObject* object, PyObject* /*type*/) {
  if (!object || object == Py_None) {
    Py_INCREF(descriptor);
    return descriptor;
  }
  try {
    const Descriptor& self = descriptorOf(descriptor);
    const AttachedInstance instance(object, *self.owner);
    return self.attribute->type->get(self.owner->module, self.attribute->member(instance->object()))
        .release();
  } catch (...) {
    setPending();
    return nullptr;
  }
}

int setAttribute(PyObject* descriptor, PyObject* object, PyObject* value) {
  try {
    const Descriptor& self = descriptorOf(descriptor);
    if (!value) {
      PyErr_Format(PyExc_TypeError, "the attribute '%s' cannot be deleted", self.attribute->name);
      raisePending();
    }
    const AttachedInstance instance(object, *self.owner);
    self.attribute->type->set(self.owner->module, self.attribute->member(instance->object()),
                              value);
    return 0;
  } catch (...) {
    setPending();
    return -1;
  }
}

void deallocate(PyObject* object) {
  PyObject_Del(object);
}

PyTypeObject* functionType() {
  static PyGetSetDef names[] = {
      {const_cast<char*>("__name__"), &nameOfFunction, nullptr, nullptr, nullptr},
      {nullptr, nullptr, nullptr, nullptr, nullptr}};
  static PyTypeObject* const type = [] {
    PyTypeObject made = plainType("Stowline.function", sizeof(Function));
    made.tp_dealloc = &deallocate;
    made.tp_call = &callFunction;
    made.tp_descr_get = &bindFunction;
    made.tp_getset = names;
    return readyType(made);
  }();
  return type;
}

PyTypeObject* descriptorType() {
  static PyTypeObject* const type = [] {
    PyTypeObject made = plainType("Stowline.attribute", sizeof(Descriptor));
    made.tp_dealloc = &deallocate;
    made.tp_descr_get = &getAttribute;
    made.tp_descr_set = &setAttribute;
    return readyType(made);
  }();
  return type;
}

Reference newFunction(Module& module, const Operation& operation, const MadeClass* owner) {
  Function* const made = PyObject_New(Function, functionType());
  Reference function = checked(reinterpret_cast<PyObject*>(made));
  made->operation = &operation;
  made->owner = owner;
  made->module = &module;
  return function;
}

Reference newDescriptor(const Attribute& attribute, const MadeClass& owner) {
  Descriptor* const made = PyObject_New(Descriptor, descriptorType());
  Reference descriptor = checked(reinterpret_cast<PyObject*>(made));
  made->attribute = &attribute;
  made->owner = &owner;
  return descriptor;
}

/// Returns the slots of a class derived from `base`: one for the C++ side, which stays when an
/// object's dictionary is emptied, and those that its objects would have without any.
Reference slotsFor(PyTypeObject* base) {
  std::vector<std::string> slots = {kSlot};
  if (base->tp_dictoffset == 0) slots.emplace_back("__dict__");
  if (base->tp_weaklistoffset == 0) slots.emplace_back("__weakref__");
  return toObject(slots);
}

Reference contentOf(const MadeClass& made, PyTypeObject* base) {
  const Class& table = made.table;
  Reference content = checked(PyDict_New());
  const auto add = [&](const char* name, const Reference& object) {
    checked(PyDict_SetItemString(content.get(), name, object.get()));
  };
  add("__module__", made.module.host.names().get<"__name__">());
  add("__slots__", slotsFor(base));
  if (table.skin) add("skin", toObject(*table.skin));
  add("__init__", newFunction(made.module, table.constructor, &made));
  for (const Operation& each : table.operations) {
    add(each.name, newFunction(made.module, each, &made));
  }
  for (const Attribute& each : table.attributes) add(each.name, newDescriptor(each, made));
  return content;
}

}  // namespace

const MadeClass& makeClass(Module& module, const Class& table, const Reference& base) {
  // Deliberately never freed, like the module's own side: anybody may keep the class.
  MadeClass& made = *new MadeClass{.table = table, .module = module, .type = {}, .slot = {}};
  const Reference content = contentOf(made, reinterpret_cast<PyTypeObject*>(base.get()));
  const Reference bases = checked(PyTuple_Pack(1, base.get()));
  const auto metaclass = Reference::borrow(reinterpret_cast<PyObject*>(Py_TYPE(base.get())));
  made.type = call(metaclass, table.name, bases, content);
  made.slot = attribute(made.type.get(), kSlot);
  return made;
}

Reference makeFunction(Module& module, const Operation& function) {
  return newFunction(module, function, nullptr);
}

bool isOperation(PyObject* method, std::string_view name) {
  if (!PyMethod_Check(method)) return false;
  PyObject* const function = PyMethod_GET_FUNCTION(method);
  return Py_TYPE(function) == functionType() && functionOf(function).operation->name == name;
}

}  // namespace receiver
