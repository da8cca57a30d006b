/// An extension that holds nothing: what the import of any takes.

#include <Python.h>

#if PY_MAJOR_VERSION >= 3

PyMODINIT_FUNC PyInit_empty() {
  static PyModuleDef definition = {
      PyModuleDef_HEAD_INIT, "empty", nullptr, -1, nullptr, nullptr, nullptr, nullptr, nullptr};
  return PyModule_Create(&definition);
}

#else

PyMODINIT_FUNC initempty() {
  static PyMethodDef none[] = {{nullptr, nullptr, 0, nullptr}};
  Py_InitModule("empty", none);
}

#endif
