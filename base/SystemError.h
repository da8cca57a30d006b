#pragma once

#include <string>
#include <system_error>

namespace base {

/// A system call that has failed; what() is one line for the user: "No such file or directory:
/// '/media/hdd'".
class SystemError : public std::system_error {
 public:
  /// `number`: its errno. `path`: what it was about.
  SystemError(int number, const std::string& path);

  const char* what() const noexcept override { return line_.c_str(); }

 private:
  std::string line_;
};

}  // namespace base
