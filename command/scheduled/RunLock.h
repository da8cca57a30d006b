#pragma once

#include "native/Descriptor.h"

namespace scheduled {

/// Keeps two scheduled backups of one receiver apart for as long as it lives (flock(2)). Commands
/// that the run starts do not hold it.
class RunLock {
 public:
  /// Raises std::runtime_error, in one line, while another run has it or when it cannot be had.
  RunLock();

 private:
  native::Descriptor file_;
};

}  // namespace scheduled
