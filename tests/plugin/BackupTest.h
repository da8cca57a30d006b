#pragma once

#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {

/// A manual backup on a receiver whose backup directory is there and whose shell removes and writes
/// the files that a backup's commands name, as long as the medium has room.
struct BackupTest : ModuleTest {
  BackupTest() {
    host.system.addDirectory(expected::kDirectory);
    host.system.shell = [this](const std::string& command) { return runShell(command); };
    record.take();
  }

  int runShell(const std::string& command) {
    if (command.starts_with("rm -f ")) {
      host.system.dropFile(command.substr(6));
    } else if (command.starts_with("tar czf ") && has_room) {
      host.system.addFile(command.substr(8, command.find(' ', 8) - 8));
    } else if (const auto redirection = command.find(" >> ");
               redirection != std::string::npos && has_room) {
      host.system.addFile(command.substr(redirection + 4));
    }
    return status;
  }

  bool has_room = true;
  int status = 0;  ///< the wait status of every command
  Made actions{host.named("BackupActions")({"manual"_t})};
};

}  // namespace stowline
