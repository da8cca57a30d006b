#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/SystemError.h"
#include "host/include/Object.h"

namespace plain {

/// What an operation of a plain host raises: an exception of a built-in class.
class Error : public host::Error, public std::runtime_error {
 public:
  /// `type`: the name of the class, such as "OSError". `message`: what went wrong, for a person.
  /// `number`: the errno, 0 when there is none.
  Error(const std::string& type, const std::string& message, int number = 0);

  const std::string& type() const { return type_; }
  const std::string& message() const { return message_; }
  int number() const { return number_; }

 private:
  std::string type_;
  std::string message_;
  int number_;
};

/// Returns the error that the module sees when a system call has failed: "OSError".
Error toError(const base::SystemError& error);

/// Does a step of a host; a system call that fails raises what the module sees.
template <class Step>
auto raising(const Step& step) {
  try {
    return step();
  } catch (const base::SystemError& error) {
    throw toError(error);
  }
}

/// Returns what went wrong for a person: of an error that the module sees its message, without the
/// number that the framework's messages begin with ("[Errno 2] ").
std::string reasonOf(const std::exception& error);

}  // namespace plain
