#include <csignal>
#include <cstdlib>
#include <future>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

/// How many jobs are broken off; STOWLINE_FAULTS says otherwise.
int rounds() {
  const char* const asked = std::getenv("STOWLINE_FAULTS");
  return asked ? std::atoi(asked) : 10;
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
  std::mt19937 random(1);
  const auto upTo = [&random](std::size_t last) {
    return std::uniform_int_distribution<std::size_t>(0, last)(random);
  };
  for (int round = 0; round < rounds(); ++round) {
    const Job& job = kJobs[upTo(std::size(kJobs) - 1)];
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
    ASSERT_EQ(next.status, 0) << "round " << round << ": " << next.errors;
    ASSERT_EQ(receiver().read(older), std::string(20000, 'x')) << "round " << round;
  }
}

}  // namespace
}  // namespace command_test
