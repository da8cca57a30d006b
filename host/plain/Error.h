#pragma once

#include <stdexcept>
#include <string>

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

}  // namespace plain
