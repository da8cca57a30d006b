#pragma once

#include <memory>
#include <string>

#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {

/// A receiver with a backup directory, on which a restore list can be opened.
struct RestoreListTest : ModuleTest {
  RestoreListTest() { host.system.addDirectory(expected::kDirectory); }

  void addFile(const std::string& name, long long size = 10000) {
    host.system.addFile(expected::kDirectory + "/" + name, size);
  }

  /// Opens the list of this type and forgets the operations so far.
  void openList(const std::string& restoretype) {
    opened = std::make_unique<Opened>(*this, "StowlineRestore", restoretype, "/plugin"_t);
    record.take();
  }

  const Opened& list() { return *opened; }
  plain::ListWidget& rows() { return opened->list("filelist"); }

  std::unique_ptr<Opened> opened;
};

}  // namespace stowline
