#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/plain/System.h"

namespace support {

/// An operating system in memory. What it holds is put in by the test; a shell command has the
/// effect that the test gives it.
class MemorySystem : public plain::System {
 public:
  /// Adds a directory, or replaces its listing; `names` in the order of the listing. A name alone
  /// makes no file.
  void addDirectory(const std::string& path, const std::vector<std::string>& names = {});

  /// Adds a file, also to the end of its directory's listing where there is such a directory.
  void addFile(const std::string& path, long long size = 0);
  void addText(const std::string& path, const std::vector<std::string>& lines);

  /// Takes a file away, also out of its directory's listing.
  void dropFile(const std::string& path);

  /// Whether a file or a directory has this path.
  bool has(const std::string& path) const;

  /// What a shell command does; takes the command, returns its wait status.
  std::function<int(const std::string&)> shell = [](const std::string&) { return 0; };

  /// The output lines of commands that are read through a pipe; any other prints nothing.
  std::map<std::string, std::vector<std::string>> outputs;

  plain::LocalTime now{.tm_year = 2024, .tm_mon = 3, .tm_mday = 5, .tm_hour = 7, .tm_min = 4};

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

 private:
  struct File {
    long long size = 0;
    std::vector<std::string> lines;
  };

  const File& file(const std::string& path) const;
  std::vector<std::string>* listingOfParent(const std::string& path);

  std::map<std::string, File> files_;
  std::map<std::string, std::vector<std::string>> directories_;
};

}  // namespace support
