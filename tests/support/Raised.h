#pragma once

#include <string>

#include "base/SystemError.h"
#include "host/plain/Error.h"

namespace support {

/// Returns the error that `call` raises: what() of a failed system call, an error that the module
/// sees as "ERRNO TYPE: MESSAGE"; "nothing" when it raises none.
template <class Call>
std::string raised(const Call& call) {
  try {
    call();
  } catch (const plain::Error& error) {
    return std::to_string(error.number()) + " " + error.what();
  } catch (const base::SystemError& error) {
    return error.what();
  }
  return "nothing";
}

}  // namespace support
