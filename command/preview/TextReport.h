#pragma once

#include <iosfwd>

#include "command/preview/Differences.h"

namespace preview {

/// Prints a preview for people.
void printText(const Preview& preview, std::ostream& out);

/// Prints a difference, so that patch(1) takes it. `escape`: control characters but the tab as
/// "\xNN", for a terminal.
void printText(const Difference& difference, bool escape, std::ostream& out);

}  // namespace preview
