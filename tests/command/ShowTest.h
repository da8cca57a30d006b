#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {

using Lines = std::vector<std::string>;

/// A receiver that has made its backups, was flashed, and has got files of its own since.
class ShowTest : public DeskTest {
 protected:
  void SetUp() override {
    DeskTest::SetUp();
    if (IsSkipped()) return;
    receiver().play("backup", "select:channel ok ok select:configurations ok ok");
    settings_ = receiver().backup("settings_", ".tar.gz");
    configuration_ = receiver().backup("configuration_ver_c_", ".tar.gz");
    receiver().flash();
    receiver().write("/etc/enigma2/userbouquet.later.tv", "#NAME Later\n");
    receiver().write("/.qws/share/data/Arora/history", "later\n");
  }

  /// Shows a file of this machine; `more` are arguments behind it.
  static Outcome show(const std::string& file, Lines more = {}) {
    more.insert(more.begin(), {kStowline, "show", file});
    return run(more);
  }

  /// Shows a backup against the receiver.
  Outcome showHere(const std::string& name, Lines more = {}) {
    more.insert(more.end(), {"--against", receiver().tree()});
    return show(pathOf(name), more);
  }

  /// Returns the preview of the restore of a backup on the receiver.
  Json restoreOf(const std::string& name) {
    const Outcome outcome = showHere(name, {"--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return Json::parse(outcome.output)["restore"];
  }

  std::string pathOf(const std::string& name) { return receiver().at(inBackups(name)); }

  std::string settings_;
  std::string configuration_;
};

/// Returns the members of a preview by their paths.
inline Lines pathsOf(const Json& members) {
  Lines paths;
  for (const Json& member : members) paths.push_back(member["path"]);
  std::ranges::sort(paths);
  return paths;
}

/// Returns the paths that an action is taken with.
inline Lines pathsOf(const Json& restore, const std::string& action) {
  Lines paths;
  for (const Json& change : restore["changes"]) {
    if (change["action"] == action) paths.push_back(change["path"]);
  }
  return paths;
}

}  // namespace command_test
