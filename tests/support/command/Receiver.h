#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/command/Files.h"
#include "tests/support/command/Process.h"
#include "tests/support/command/Snapshot.h"

namespace nlohmann {

/// Shows every frame on a line of its own when a test fails.
inline void PrintTo(const json& value, std::ostream* output) {
  *output << "\n" << value.dump();
}

}  // namespace nlohmann

namespace command_test {

using Json = nlohmann::json;

/// What a script gave.
struct Play {
  int status;
  std::vector<Json> lines;  ///< frames and events, in their order
  std::string errors;
  std::vector<std::string> log;
  std::vector<std::string> trace;

  const Json& last() const { return lines.back(); }
  std::vector<Json> frames() const;
  std::vector<Json> events() const;
};

/// A laid-out receiver tree in a temporary directory.
class Receiver {
 public:
  /// Raises std::runtime_error when the command does not lay it out.
  explicit Receiver(const std::string& model = "solo2");

  /// The directory that holds the tree and nothing else but what a test puts beside it.
  std::filesystem::path outside() const { return directory_.path(); }
  std::filesystem::path tree() const { return outside() / "receiver"; }

  /// Where an absolute path of the receiver lies.
  std::filesystem::path at(const std::string& path) const { return tree() / path.substr(1); }

  std::string read(const std::string& path) const { return readFile(at(path)); }
  void write(const std::string& path, const std::string& content) const {
    writeFile(at(path), content);
  }
  void makeScript(const std::string& path, const std::string& body) const;

  /// Puts a script in the place of a tool, which it finds under the name PATH.real.
  void replaceTool(const std::string& path, const std::string& body) const;
  std::vector<std::string> lines(const std::string& path) const { return linesOf(read(path)); }
  bool exists(const std::string& path) const {
    return std::filesystem::exists(std::filesystem::symlink_status(at(path)));
  }
  Snapshot content() const { return snapshot(tree()); }

  void flash() const;

  /// Runs `stowline COMMAND --receiver TREE OPTIONS`. `wrapper`: a program, with its arguments,
  /// that starts it.
  Outcome runHere(const std::string& command, const std::vector<std::string>& options = {},
                  const std::vector<std::string>& wrapper = {}) const;

  /// Plays `words` in the menu's flavour `menu`; `wrapper` is a program, with its arguments, that
  /// starts the command.
  Play play(const std::string& menu, const std::string& words,
            const std::vector<std::string>& wrapper = {}) const;

  /// The arguments of a play, from the command itself on.
  std::vector<std::string> playArguments(const std::string& menu, const std::string& words) const;

  /// Returns the name of the one file in the backup directory that begins and ends so. Raises
  /// std::runtime_error unless there is exactly one.
  std::string backup(const std::string& prefix, const std::string& suffix) const;

  /// Returns the processes that work for the tree: those in it, and those outside that have its
  /// name in their command line.
  std::vector<pid_t> processes() const;

  /// Waits until there are none.
  void waitForProcesses() const;

  /// Renames a file of the backup directory.
  void renameBackup(const std::string& from, const std::string& to) const;

 private:
  support::TemporaryDirectory directory_;
};

/// The backup directory on the default medium.
inline const std::string kBackups = "/media/hdd/qor-stowline";

/// Returns the path of a file in it.
inline std::string inBackups(const std::string& name) {
  return kBackups + "/" + name;
}

}  // namespace command_test
