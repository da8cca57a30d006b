#pragma once

#include <string>
#include <vector>

#include "host/include/OperatingSystem.h"

namespace native {

/// The operating system of this process, by plain POSIX calls. Every failing call raises
/// host::Error
/// ("OSError") with its errno and path.
class NativeSystem : public host::OperatingSystem {
 public:
  int system(const std::string& command) override;
  std::vector<std::string> popen(const std::string& command) override;
  std::vector<std::string> open(const std::string& path) override;
  std::vector<std::string> listdir(const std::string& path) override;
  bool exists(const std::string& path) override;
  std::string join(const std::string& directory, const std::string& name) override;
  long long fileSize(const std::string& path) override;
  void makedirs(const std::string& path) override;
  void remove(const std::string& path) override;
  void chmod(const std::string& path, int mode) override;
  host::LocalTime localtime() override;
};

}  // namespace native
