#pragma once

#include <filesystem>

#include "base/Descriptor.h"

namespace desk {

/// Keeps a receiver tree to one command at a time, for as long as this or a duplicate of its
/// descriptor lives (flock(2) on its directory): two GUIs would end each other, and a flash would
/// delete the files that one uses.
class TreeLock {
 public:
  /// Waits for a second when somebody else has the tree `dir`: what a killed command leaves behind
  /// ends within moments. Raises TreeError, which names the process, when it still has it, or when
  /// the tree cannot be opened.
  explicit TreeLock(const std::filesystem::path& dir);

  /// The descriptor that holds it.
  int descriptor() const { return dir_.number(); }

 private:
  base::Descriptor dir_;
};

}  // namespace desk
