#include "Class.h"

#include <string>

#include "Types.h"

namespace receiver {
namespace {

/// An operation as the interpreter calls it. In a class it binds to an object as a function does.
struct Function {
  PyObject_HEAD const Operation* operation;
  const Class* owner;  ///< null for a function of the module
  Module* module;
};

/// An attribute as the interpreter reads and sets it.
struct Descriptor {
  PyObject_HEAD const Attribute* attribute;
  const Class* owner;
  Module* module;
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
      call.arguments[i] = PyTuple_GET_ITEM(positional, skipped + static_cast<Py_ssize_t>(i));
      --given;
    } else if (by_name) {
      call.arguments[i] = by_name;
      --named;
    } else {
      call.arguments[i] = defaultOf(operation, parameter);
    }
  }
  if (given > 0) raiseTypeError(operation, "is called with too many arguments");
  if (named > 0) raiseTypeError(operation, "is called with an unknown or a repeated keyword");
}

Reference runOperation(const Function& function, const Call& call) {
  if (!function.owner || function.operation == &function.owner->constructor) {
    return function.operation->run(call);
  }
  const AttachedInstance instance(call.self, *function.owner);
  Call bound = call;
  bound.object = instance->object();
  Peer* const peer = instance->peer();
  if (!peer) return function.operation->run(bound);
  const Peer::Entered entered(*peer, call.self);
  instance->readBack(call.self);
  return function.operation->run(bound);
}

PyObject* callFunction(PyObject* object, PyObject* positional, PyObject* keywords) {
  try {
    const Function& function = functionOf(object);
    const Py_ssize_t skipped = function.owner ? 1 : 0;
    if (PyTuple_GET_SIZE(positional) < skipped) {
      raiseTypeError(*function.operation, "is called without its object");
    }
    Call call{*function.module, skipped == 1 ? PyTuple_GET_ITEM(positional, 0) : nullptr, nullptr};
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
    return self.attribute->get(*self.module, instance->object()).release();
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
    self.attribute->set(*self.module, instance->object(), value);
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

Reference newFunction(Module& module, const Operation& operation, const Class* owner) {
  Function* const made = PyObject_New(Function, functionType());
  Reference function = checked(reinterpret_cast<PyObject*>(made));
  made->operation = &operation;
  made->owner = owner;
  made->module = &module;
  return function;
}

Reference newDescriptor(Module& module, const Attribute& attribute, const Class& owner) {
  Descriptor* const made = PyObject_New(Descriptor, descriptorType());
  Reference descriptor = checked(reinterpret_cast<PyObject*>(made));
  made->attribute = &attribute;
  made->owner = &owner;
  made->module = &module;
  return descriptor;
}

}  // namespace

Reference makeClass(Module& module, const Class& type, const Reference& base) {
  const Reference content = checked(PyDict_New());
  const auto add = [&](const char* name, const Reference& object) {
    checked(PyDict_SetItemString(content.get(), name, object.get()));
  };
  add("__module__", module.host.names().get<"__name__">());
  add("__init__", newFunction(module, type.constructor, &type));
  for (const Operation& each : type.operations) add(each.name, newFunction(module, each, &type));
  for (const Attribute& each : type.attributes) add(each.name, newDescriptor(module, each, type));
  const Reference bases = checked(PyTuple_Pack(1, base.get()));
  const auto metaclass = Reference::borrow(reinterpret_cast<PyObject*>(Py_TYPE(base.get())));
  return call(metaclass, type.name, bases, content);
}

Reference makeFunction(Module& module, const Operation& function) {
  return newFunction(module, function, nullptr);
}

}  // namespace receiver
