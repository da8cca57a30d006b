#pragma once

#include <filesystem>
#include <iosfwd>
#include <nlohmann/json.hpp>

#include "command/preview/Preview.h"

namespace preview {

/// Prints the same as TextReport, as one JSON object. Its long lists are written element by
/// element, the members while they come: as a whole they would take too much memory. The members'
/// "size" is 0 for all but files.
class JsonReport {
 public:
  /// `file` is the archive; `out` outlives this.
  JsonReport(const std::filesystem::path& file, std::ostream& out);

  /// Prints a member of the archive.
  void add(const tarball::Member& member);

  /// Prints the rest. Raises base::SystemError.
  void finish(Preview& preview);

 private:
  void addRestore(Restore& restore);
  void openList(nlohmann::ordered_json& list, std::size_t depth);
  void write(const nlohmann::ordered_json& element);
  void closeList();

  std::ostream& out_;
  nlohmann::ordered_json object_;  ///< what there is of the object so far, with empty long lists
  std::size_t written_ = 0;        ///< bytes of its text
  std::size_t depth_ = 0;          ///< how many blanks stand before the open list's elements
  bool has_elements_ = false;      ///< whether it has any
};

}  // namespace preview
