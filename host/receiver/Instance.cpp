#include "Instance.h"

#include <utility>

#include "Class.h"
#include "Types.h"

namespace receiver {
namespace {

/// Returns the name under which an object keeps its C++ side among its attributes.
PyObject* key() {
  return named<"_stowline">();
}

/// Holds an object's C++ side, and shows the cycle collector what that holds.
struct Holder {
  PyObject_HEAD Instance* instance;
  const void* owner;  ///< the address of the object that it was made for; a copy of that has none
};

Holder* holderOf(PyObject* object) {
  return reinterpret_cast<Holder*>(object);
}

int traverseHolder(PyObject* self, visitproc visit, void* arg) {
  Instance* const instance = holderOf(self)->instance;
  if (!instance) return 0;
  for (const Attribute& attribute : instance->type().attributes) {
    if (const int result = attribute.traverse(instance->object(), visit, arg)) return result;
  }
  return 0;
}

int clearHolder(PyObject* self) {
  delete std::exchange(holderOf(self)->instance, nullptr);
  return 0;
}

void deallocateHolder(PyObject* self) {
  PyObject_GC_UnTrack(self);
  clearHolder(self);
  PyObject_GC_Del(self);
}

PyTypeObject* holderType() {
  static PyTypeObject* const type = [] {
    PyTypeObject made = plainType("Stowline.instance", sizeof(Holder));
    made.tp_flags |= Py_TPFLAGS_HAVE_GC;
    made.tp_traverse = &traverseHolder;
    made.tp_clear = &clearHolder;
    made.tp_dealloc = &deallocateHolder;
    return readyType(made);
  }();
  return type;
}

}  // namespace

void attachInstance(PyObject* self, std::unique_ptr<Instance> instance) {
  Holder* const made = PyObject_GC_New(Holder, holderType());
  const Reference holder = checked(reinterpret_cast<PyObject*>(made));
  made->instance = instance.release();
  made->owner = self;
  PyObject_GC_Track(holder.get());
  checked(PyObject_GenericSetAttr(self, key(), holder.get()));
}

AttachedInstance::AttachedInstance(PyObject* self, const Class& type) {
  holder_ = Reference::steal(PyObject_GenericGetAttr(self, key()));
  const bool is_held = holder_ && Py_TYPE(holder_.get()) == holderType();
  if (!is_held || !holderOf(holder_.get())->instance || holderOf(holder_.get())->owner != self) {
    PyErr_Format(PyExc_AttributeError, "'%.200s' object is not initialised",
                 Py_TYPE(self)->tp_name);
    raisePending();
  }
  if (&(*this)->type() != &type) {
    PyErr_Format(PyExc_TypeError, "a '%s' object is required, not '%.200s'", type.name,
                 Py_TYPE(self)->tp_name);
    raisePending();
  }
}

Instance& AttachedInstance::operator*() const {
  return *holderOf(holder_.get())->instance;
}

}  // namespace receiver
