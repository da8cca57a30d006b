#pragma once

#include <filesystem>
#include <iosfwd>
#include <utility>

#include "command/output/JsonWriter.h"
#include "command/preview/Preview.h"

namespace preview {

/// Prints the same as TextReport, as one JSON object, the members while they come. The members'
/// "size" is 0 for all but files.
class JsonReport {
 public:
  /// `file` is the archive; `out` outlives this.
  JsonReport(std::filesystem::path file, std::ostream& out) : file_(std::move(file)), json_(out) {}

  /// Prints a member of the archive.
  void add(const tarball::Member& member);

  /// Prints the rest. Raises base::SystemError.
  void finish(Preview& preview);

 private:
  void begin();
  void addRestore(Restore& restore);

  std::filesystem::path file_;
  output::JsonWriter json_;
  bool has_begun_ = false;
};

}  // namespace preview
