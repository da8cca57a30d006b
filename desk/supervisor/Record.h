#pragma once

#include <filesystem>
#include <string>

#include "base/Descriptor.h"

namespace desk {

/// A file that lines are appended to as things happen. No command ever sees it.
class Record {
 public:
  /// A record of nothing.
  Record() = default;

  /// Opens the file `path`, which is made when it is missing; an empty path records nothing. Raises
  /// std::runtime_error when it cannot be opened.
  explicit Record(const std::filesystem::path& path);

  /// Whether something is recorded at all.
  explicit operator bool() const { return static_cast<bool>(file_); }

  /// Appends `text` as one line, with a line break within it as "\n". Raises base::SystemError
  /// when it cannot be written.
  void append(const std::string& text) const;

 private:
  std::string path_;
  base::Descriptor file_;
};

}  // namespace desk
