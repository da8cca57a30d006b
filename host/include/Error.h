#pragma once

#include <exception>
#include <string>
#include <utility>

#include "host/include/Object.h"

namespace host {

/// What a host operation raises.
class Error : public std::exception {
 public:
  /// `type`: the name of the error's class, such as "OSError" or "AttributeError". `message`: what
  /// went wrong, for a person. `number`: the errno, 0 when there is none. `original`: the
  /// interpreter's own exception, where there is one, so that it can be raised again as it was.
  Error(std::string type, std::string message, int number = 0, ObjectRef original = nullptr)
      : type_(std::move(type)),
        message_(std::move(message)),
        number_(number),
        original_(std::move(original)),
        what_(type_ + ": " + message_) {}

  const std::string& type() const { return type_; }
  const std::string& message() const { return message_; }
  int number() const { return number_; }
  const ObjectRef& original() const { return original_; }

  /// Type and message in one line: "OSError: [Errno 2] No such file or directory: '/media/usb'".
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string type_;
  std::string message_;
  int number_;
  ObjectRef original_;
  std::string what_;
};

}  // namespace host
