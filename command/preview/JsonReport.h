#pragma once

#include <filesystem>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "command/preview/Preview.h"

namespace preview {

/// Prints the same as TextReport, as one JSON object, value by value: a whole one would take too
/// much memory. The members' "size" is 0 for all but files.
class JsonReport {
 public:
  /// `file` is the archive; `out` outlives this.
  JsonReport(std::filesystem::path file, std::ostream& out);

  /// Prints a member of the archive.
  void add(const tarball::Member& member);

  /// Prints the rest. Raises base::SystemError.
  void finish(Preview& preview);

 private:
  void begin();
  void write(Restore& restore);
  void open(const char* key, char bracket);
  void close(char bracket);
  void write(const char* key, const nlohmann::ordered_json& value);
  void place(const char* key);

  std::filesystem::path file_;
  std::ostream& out_;
  std::string line_ = "\n";  ///< what begins a line: the newline and the blanks behind it
  bool is_first_ = true;     ///< whether no value has been written since a bracket was opened
};

}  // namespace preview
