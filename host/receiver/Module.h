#pragma once

#include "ReceiverHost.h"

namespace receiver {

/// One load of the module; lives as long as the process.
struct Module {
  explicit Module(PyObject* dictionary) : host(dictionary) {}

  ReceiverHost host;
  Reference engine_class;  ///< BackupActions, as it was defined
};

}  // namespace receiver
