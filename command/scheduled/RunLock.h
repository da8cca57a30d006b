#pragma once

#include "base/Descriptor.h"

namespace scheduled {

/// Keeps two scheduled backups of one receiver apart for as long as it, or a command that the run
/// has started, lives (flock(2)): a run that is killed may leave one behind that still writes.
class RunLock {
 public:
  /// Raises std::runtime_error, in one line, while another run has it or when it cannot be had.
  RunLock();

 private:
  base::Descriptor file_;
};

}  // namespace scheduled
