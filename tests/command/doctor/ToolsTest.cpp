#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "command/backups/Kind.h"
#include "command/backups/RestoreScreen.h"
#include "command/doctor/Tools.h"
#include "host/dryrun/Host.h"
#include "plugin/src/Setup.h"
#include "tests/support/TemporaryDirectory.h"

namespace doctor {
namespace {

using Words = std::set<std::string>;

/// Returns the shell commands of every backup, and of the restore of an old and of a new
/// configuration, on a receiver where every file is there.
std::vector<std::string> commandsOfTheModule() {
  dryrun::System system(std::nullopt);
  dryrun::Host host(system, "solo2", "");
  stowline::load(host.module());
  const host::Object engine = host.named("BackupActions")();
  for (const backups::Kind& kind : backups::kKinds) engine.call(kind.operation, {});
  std::vector<std::string> commands = system.takeCommands();
  for (const char* archive : {"/media/hdd/configuration", "/media/hdd/configuration_ver_c"}) {
    std::ranges::copy(backups::configurationRestore(host, archive), std::back_inserter(commands));
  }
  return commands;
}

/// Returns what the commands run: the first word of each part of a line, but for the words of the
/// shell's own.
Words programsOf(const std::vector<std::string>& commands) {
  const Words before_programs = {"if", "then"};
  Words programs;
  for (std::string command : commands) {
    std::ranges::replace(command, '|', ';');
    std::istringstream parts(command);
    for (std::string part; std::getline(parts, part, ';');) {
      std::istringstream words(part);
      std::string program;
      while (words >> program && before_programs.contains(program)) {
      }
      if (!program.empty() && program != "fi") programs.insert(program);
    }
  }
  return programs;
}

/// Returns the words of a text.
Words wordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

TEST(Tools, AreThoseThatTheModulesCommandsRunWithTheShellAndTheCompressor) {
  const support::TemporaryDirectory nothing;
  dryrun::System empty{base::Root(nothing.path())};
  Words expected = programsOf(commandsOfTheModule());
  expected.insert({"missing:", "sh", "gzip"});
  EXPECT_EQ(wordsOf(checkTools(empty).detail), expected);
}

}  // namespace
}  // namespace doctor
