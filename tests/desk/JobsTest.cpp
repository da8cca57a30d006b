#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <stdexcept>

#include "desk/model/Jobs.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/Raised.h"

namespace desk {
namespace {

using support::raised;

struct JobsTest : testing::Test {
  void startShell(const std::string& command) {
    jobs.start(
        {"/bin/sh", "-c", command}, [this](const std::string& text) { output += text; },
        [this](int exit_status) { endings.push_back(exit_status); });
  }

  Jobs jobs;
  std::string output;
  std::vector<int> endings;
};

/// A shell command, what it prints on either channel and its exit status as a shell gives it.
struct Job {
  const char* command;
  const char* output;
  int exit_status;
};

constexpr Job kJobs[] = {
    {"true", "", 0},
    {"echo out; echo err >&2", "out\nerr\n", 0},
    {"printf unended; exit 3", "unended", 3},
    {"exit 255", "", 255},
    {"kill -9 $$", "", 137},
    {"echo first; kill -15 $$", "first\n", 143},
    {"/no/such/program 2>/dev/null", "", 127},
    {"exec >&- 2>&-; exit 4", "", 4},
};

TEST_F(JobsTest, OutputAndEndAreReported) {
  for (const Job& job : kJobs) {
    startShell(job.command);
    EXPECT_FALSE(jobs.idle());
    runToEnd(jobs);
    EXPECT_EQ(output, job.output) << job.command;
    EXPECT_EQ(endings, std::vector{job.exit_status}) << job.command;
    output.clear();
    endings.clear();
  }
}

TEST_F(JobsTest, NothingIsReportedBeforeTheReport) {
  startShell("echo out");
  std::vector<pollfd> watched = jobs.watched();
  while (poll(watched.data(), watched.size(), -1) < 0) continue;
  EXPECT_EQ(output, "");
  runToEnd(jobs);
  EXPECT_EQ(output, "out\n");
}

TEST_F(JobsTest, AllOfALargeOutputComesBeforeTheEnd) {
  jobs.start(
      {"/bin/sh", "-c", "seq 1 100000"}, [this](const std::string& text) { output += text; },
      [this](int) { endings.push_back(static_cast<int>(output.size())); });
  runToEnd(jobs);
  EXPECT_EQ(endings, std::vector{588895});
}

TEST_F(JobsTest, ProgramIsFoundInPathAndTakesItsArgumentsAsTheyStand) {
  jobs.start(
      {"printf", "%s|", "a  b", "*", "$HOME", ""},
      [this](const std::string& text) { output += text; },
      [this](int exit_status) { endings.push_back(exit_status); });
  runToEnd(jobs);
  EXPECT_EQ(output, "a  b|*|$HOME||");
  EXPECT_EQ(endings, std::vector{0});
}

TEST_F(JobsTest, ProgramThatIsNotThereRaises) {
  EXPECT_EQ(raised([&] {
              jobs.start({"/no/such/program", "x"}, {}, {});
            }),
            "No such file or directory: '/no/such/program'");
  EXPECT_TRUE(jobs.idle());
}

TEST_F(JobsTest, BackgroundProcessThatKeepsThePipeDoesNotDelayTheEnd) {
  startShell("sleep 600 & echo $!");
  runToEnd(jobs);
  EXPECT_EQ(endings, std::vector{0});
  const pid_t background = std::stoi(output);
  EXPECT_EQ(kill(background, SIGKILL), 0);
}

TEST_F(JobsTest, SeveralRunAtOnceAndEndInTheirOwnOrder) {
  const Gate gate;
  startShell(gate.wait() + "; exit 1");
  startShell("exit 2");
  while (endings.empty()) waitForJob(jobs);
  EXPECT_EQ(endings, std::vector{2});
  EXPECT_FALSE(jobs.idle());
  gate.open();
  runToEnd(jobs);
  EXPECT_EQ(endings, (std::vector{2, 1}));
}

TEST_F(JobsTest, EndMayStartAnotherJob) {
  jobs.start({"true"}, {}, [this](int) { startShell("exit 5"); });
  runToEnd(jobs);
  EXPECT_EQ(endings, std::vector{5});
}

TEST_F(JobsTest, WhatACallbackRaisesPassesThroughAndTheOthersGoOn) {
  jobs.start({"true"}, {}, [](int) { throw std::runtime_error("by the callback"); });
  EXPECT_THROW(runToEnd(jobs), std::runtime_error);
  EXPECT_TRUE(jobs.idle());
  startShell("exit 6");
  runToEnd(jobs);
  EXPECT_EQ(endings, std::vector{6});
}

TEST_F(JobsTest, ReportReturnsWhileAJobPrintsWithoutEnd) {
  std::optional<Jobs> own;
  own.emplace();
  std::size_t reported = 0;
  // A report that never returned would read on: the job is told to stop by then, so that the test
  // fails and does not hang.
  constexpr std::size_t kTooMuch = 64U << 20U;
  own->start({"/bin/sh", "-c", "echo $$; exec cat /dev/zero"},
             [&](const std::string& text) {
               if (reported == 0) output = text;
               reported += text.size();
               if (reported > kTooMuch) kill(std::stoi(output), SIGKILL);
             },
             {});
  while (reported == 0) waitForJob(*own);
  for (int round = 0; round < 10; ++round) own->report();
  EXPECT_LT(reported, kTooMuch);
  kill(std::stoi(output), SIGKILL);
}

TEST_F(JobsTest, GoneOwnerEndsWhatIsStillRunning) {
  std::optional<Jobs> own;
  own.emplace();
  own->start(
      {"/bin/sh", "-c", "echo $$; exec sleep 600"},
      [this](const std::string& text) { output += text; },
      [this](int exit_status) { endings.push_back(exit_status); });
  while (output.empty()) waitForJob(*own);
  own.reset();
  EXPECT_EQ(kill(std::stoi(output), 0), -1);
  EXPECT_EQ(errno, ESRCH);
  EXPECT_EQ(endings, std::vector<int>{});
}

/// Leaves this process `left` file descriptors to open while it lives.
class FewDescriptors {
 public:
  explicit FewDescriptors(std::size_t left) {
    getrlimit(RLIMIT_NOFILE, &former_);
    rlimit low = former_;
    low.rlim_cur = 64;
    setrlimit(RLIMIT_NOFILE, &low);
    do {
      taken_.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
    } while (taken_.back());
    for (std::size_t freed = 0; freed < left + 1; ++freed) taken_.pop_back();
  }
  ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &former_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit former_{};
  std::vector<base::Descriptor> taken_;
};

TEST_F(JobsTest, JobThatCannotBeWatchedRaisesAndIsNotLeftRunning) {
  std::string error;
  {
    const FewDescriptors few(2);  // enough for its output, none for its end
    error = raised([&] { startShell("true"); });
  }
  EXPECT_TRUE(error.starts_with("Too many open files")) << error;
  EXPECT_TRUE(jobs.idle());
}

}  // namespace
}  // namespace desk
