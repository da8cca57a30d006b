#pragma once

#include <string>
#include <vector>

#include "host/plain/System.h"

namespace native {

/// The operating system of this process, by plain POSIX calls. Every failing call raises
/// base::SystemError.
class NativeSystem : public plain::System {
 public:
  int system(const std::string& command) override;
  std::vector<std::string> popen(const std::string& command) override;
  std::vector<std::string> open(const std::string& path) override;
  std::vector<std::string> listdir(const std::string& path) override;
  bool exists(const std::string& path) override;
  long long fileSize(const std::string& path) override;
  void makedirs(const std::string& path) override;
  void remove(const std::string& path) override;
  void chmod(const std::string& path, int mode) override;
  plain::LocalTime localtime() override;
};

}  // namespace native
