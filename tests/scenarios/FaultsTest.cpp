#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Environment.h"
#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

/// Whether anything is mounted at or below a directory.
bool isMountedBelow(const std::string& directory) {
  std::ifstream mounts("/proc/self/mountinfo");
  const std::string table{std::istreambuf_iterator<char>(mounts), {}};
  return table.find(directory) != std::string::npos;
}

struct Job {
  const char* menu;
  const char* words;
};

constexpr Job kJobs[] = {
    {"backup", "select:channel ok ok select:configurations ok ok exit"},
    {"restore", "select:channel ok ok ok exit"},
    {"restore", "select:configurations ok ok ok exit"},
    {"restore", "select:plugins ok ok wait ok exit"},
};

using FaultsTest = DeskTest;

TEST_F(FaultsTest, WhateverIsKilledWheneverNothingIsLeftAndTheNextDeskOpens) {
  const std::string older = inBackups("settings_20200101_00-00_solo2.tar.gz");
  receiver().write(older, std::string(20000, 'x'));
  receiver().play("backup", "select:installed ok ok select:configurations ok ok exit");
  // How many jobs are broken off, and which way.
  const unsigned rounds = support::numberOf("STOWLINE_FAULTS", 12);
  const unsigned seed = support::numberOf("STOWLINE_SEED", 1);
  std::mt19937 random(seed);
  const auto upTo = [&random](std::size_t last) {
    return std::uniform_int_distribution<std::size_t>(0, last)(random);
  };
  for (unsigned round = 0; round < rounds; ++round) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    const Job& job = kJobs[round % std::size(kJobs)];
    // What the leak check starts would be among the victims, and it would wait for that for ever.
    std::vector<std::string> command = withoutLeakCheck({});
    for (const std::string& word : receiver().playArguments(job.menu, job.words)) {
      command.push_back(word);
    }
    auto playing = std::async(std::launch::async, [&command] { return run(command); });
    std::this_thread::sleep_for(std::chrono::milliseconds(upTo(300)));
    if (const auto victims = receiver().processes(); !victims.empty()) {
      kill(victims[upTo(victims.size() - 1)], SIGKILL);
    }
    playing.get();

    receiver().waitForProcesses();
    const Play next = receiver().play("backup", "exit");
    ASSERT_EQ(next.status, 0) << next.errors;
    ASSERT_EQ(receiver().read(older), std::string(20000, 'x'));
    ASSERT_FALSE(isMountedBelow(receiver().tree()));
  }
}

}  // namespace
}  // namespace command_test
