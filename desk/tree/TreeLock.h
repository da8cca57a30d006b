#pragma once

#include <filesystem>

#include "host/native/Descriptor.h"

namespace desk {

/// Keeps a receiver tree to one user at a time, for as long as this or a process forked since
/// lives (flock(2) on its directory): two GUIs would end each other's, and a flash would take the
/// ground from under one.
class TreeLock {
 public:
  /// Raises TreeError when somebody else has the tree `dir`, or it cannot be opened.
  explicit TreeLock(const std::filesystem::path& dir);

 private:
  native::Descriptor dir_;
};

}  // namespace desk
