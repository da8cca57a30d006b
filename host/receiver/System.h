#pragma once

#include <string>
#include <vector>

#include "host/include/OperatingSystem.h"
#include "host/receiver/Names.h"

namespace receiver {

/// The operating system by the interpreter's functions, as they were bound at load.
class System : public host::OperatingSystem {
 public:
  explicit System(const Names& names) : names_(names) {}

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

 private:
  const Names& names_;
};

}  // namespace receiver
