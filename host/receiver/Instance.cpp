#include "host/receiver/Instance.h"

#include <utility>

#include "host/receiver/Class.h"
#include "host/receiver/Types.h"

namespace receiver {
namespace {

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
  if (!instance || !instance->object()) return 0;
  for (const Attribute& attribute : instance->type().attributes) {
    const void* const member = attribute.member(instance->object());
    if (const int result = attribute.type->traverse(member, visit, arg)) return result;
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

/// Returns what an object keeps in the slot; nothing, with an error set, when that is nothing or
/// the object is of another class.
Reference slotOf(PyObject* self, const MadeClass& type) {
  PyObject* const slot = type.slot.get();
  return Reference::steal(Py_TYPE(slot)->tp_descr_get(slot, self, nullptr));
}

/// Returns -1 with an error set when the object is of another class. Null empties the slot.
int setSlot(PyObject* self, const MadeClass& type, PyObject* value) {
  PyObject* const slot = type.slot.get();
  return Py_TYPE(slot)->tp_descr_set(slot, self, value);
}

}  // namespace

Attaching::Attaching(PyObject* self, const MadeClass& type, std::unique_ptr<Instance> instance)
    : self_(self), type_(type) {
  Holder* const made = PyObject_GC_New(Holder, holderType());
  holder_ = checked(reinterpret_cast<PyObject*>(made));
  made->instance = instance.release();
  made->owner = self;
  PyObject_GC_Track(made);
  former_ = slotOf(self, type);
  if (!former_) PyErr_Clear();
  checked(setSlot(self, type, holder_.get()));
}

Attaching::~Attaching() {
  if (kept_) return;
  setSlot(self_, type_, former_.get());
  PyErr_Clear();  // the error of the construction is under way as a C++ exception
}

AttachedInstance::AttachedInstance(PyObject* self, const MadeClass& type)
    : holder_(slotOf(self, type)) {
  if (!holder_ && !PyErr_ExceptionMatches(PyExc_AttributeError)) raisePending();
  const bool is_held = holder_ && Py_TYPE(holder_.get()) == holderType();
  Holder* const holder = is_held ? holderOf(holder_.get()) : nullptr;
  if (!holder || holder->owner != self || !holder->instance || !holder->instance->object()) {
    PyErr_Format(PyExc_AttributeError, "'%.200s' object is not initialised",
                 Py_TYPE(self)->tp_name);
    raisePending();
  }
}

Instance& AttachedInstance::operator*() const {
  return *holderOf(holder_.get())->instance;
}

}  // namespace receiver
