#pragma once

#include <iosfwd>

#include "command/output/Table.h"
#include "command/preview/Preview.h"

namespace preview {

/// Prints what there is to show of an archive for people, differences so that patch(1) takes them.
class TextReport {
 public:
  /// `out` outlives this. `escape`: control characters but the tab in differences as "\xNN", for a
  /// terminal.
  TextReport(std::ostream& out, bool escape) : out_(out), escape_(escape) {}

  /// Takes a member of the archive.
  void add(const tarball::Member& member);

  /// Prints it all. Raises base::SystemError.
  void finish(Preview& preview);

 private:
  std::ostream& out_;
  bool escape_;
  output::Table members_{{{"MODE"}, {"SIZE", true}, {"TIME"}, {"PATH"}}};
};

}  // namespace preview
