#include "host/receiver/Types.h"

#include <memory>

#include "host/receiver/Errors.h"

namespace receiver {

PyTypeObject plainType(const char* name, std::size_t size) {
  PyTypeObject made{};
  keepType(made);
  made.tp_name = name;
  made.tp_basicsize = static_cast<Py_ssize_t>(size);
  made.tp_flags = Py_TPFLAGS_DEFAULT;
  return made;
}

PyTypeObject* readyType(const PyTypeObject& type) {
  auto made = std::make_unique<PyTypeObject>(type);
  checked(PyType_Ready(made.get()));
  return made.release();
}

}  // namespace receiver
