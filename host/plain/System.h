#pragma once

#include <string>
#include <vector>

namespace plain {

/// A local time, broken down; the fields that the module uses of struct tm, with the year in full
/// and the month from 1.
struct LocalTime {
  int tm_year;
  int tm_mon;
  int tm_mday;
  int tm_hour;
  int tm_min;
};

/// The operating system, as a process sees it: blocking calls, and text that is bytes of no
/// particular encoding. Every operation may raise base::SystemError.
class System {
 public:
  virtual ~System() = default;

  /// Runs `command` through the shell to its end. Returns its wait status, 0 from a system that
  /// does not know it; a failing command raises nothing.
  virtual int system(const std::string& command) = 0;

  /// Runs `command` through the shell to its end. Returns its standard output as lines, each with
  /// its newline; a failing command raises nothing.
  virtual std::vector<std::string> popen(const std::string& command) = 0;

  /// Opens the text file `path`, reads it to its end and closes it. Returns its lines, each with
  /// its newline (the last one may have none).
  virtual std::vector<std::string> open(const std::string& path) = 0;

  /// Returns the names in the directory `path` without "." and "..", in the directory's own order.
  virtual std::vector<std::string> listdir(const std::string& path) = 0;

  /// Whether `path` names something; a dangling link does not.
  virtual bool exists(const std::string& path) = 0;

  /// Returns the size of the file `path` in bytes.
  virtual long long fileSize(const std::string& path) = 0;

  /// Creates the directory `path` with all missing parents, with default permissions.
  virtual void makedirs(const std::string& path) = 0;

  /// Deletes the file `path`.
  virtual void remove(const std::string& path) = 0;

  /// Sets the permission bits of `path`.
  virtual void chmod(const std::string& path, int mode) = 0;

  /// Returns the current local time.
  virtual LocalTime localtime() = 0;
};

}  // namespace plain
