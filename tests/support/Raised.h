#pragma once

#include <string>

#include "host/plain/Error.h"

namespace support {

/// Returns the error that `call` raises, as "ERRNO TYPE: MESSAGE"; "nothing" when it raises none.
template <class Call>
std::string raised(const Call& call) {
  try {
    call();
  } catch (const plain::Error& error) {
    return std::to_string(error.number()) + " " + error.what();
  }
  return "nothing";
}

}  // namespace support
