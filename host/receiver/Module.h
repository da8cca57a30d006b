#pragma once

#include "host/receiver/ReceiverHost.h"

namespace receiver {

struct MadeClass;

/// One load of the module; lives as long as the process.
struct Module {
  explicit Module(PyObject* object_)
      : object(Reference::borrow(object_)), host(PyModule_GetDict(object_)) {}

  Reference object;  ///< the interpreter's, which would empty its dictionary when it goes
  ReceiverHost host;
  const MadeClass* engine = nullptr;  ///< BackupActions
};

}  // namespace receiver
