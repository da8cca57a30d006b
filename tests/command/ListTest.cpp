#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Namespace.h"

namespace command_test {
namespace {

namespace fs = std::filesystem;

/// The catalogue of a medium, as a person and as a program read it.
class ListTest : public testing::Test {
 protected:
  ListTest() {
    const std::string archive = "configuration_ver_b_20240305_07-04_solo2.tar.gz";
    for (const std::string& name : {std::string("settings_20240305_07-04_solo2.auto.tar.gz"),
                                    std::string("settings_20240304_07-04_duo2.tar.gz"), archive}) {
      add(name, 20000);
    }
    add(archive + "_user_files", 677);
    add("settings_small\n.tar.gz", 9999);
    add("restore_me.sh", 10);
  }

  void add(const std::string& name, std::size_t size) const {
    writeFile(std::filesystem::path(medium_ / "qor-stowline") / name, std::string(size, 'x'));
  }

  Outcome list(const std::vector<std::string>& options) const {
    std::vector<std::string> argv = {kStowline, "list", medium_.path()};
    argv.insert(argv.end(), options.begin(), options.end());
    return run(argv);
  }

  support::TemporaryDirectory medium_;
};

TEST_F(ListTest, TableSaysWhatEachBackupIsAndWhatBecomesOfIt) {
  const Outcome outcome = list({"--model", "solo2"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(
      outcome.output,
      "KIND           DATE              MODEL  BY     VERSION  RESTORE KEEPS      SIZE  RESTORE "
      "LIST  FILE                                             WITH\n"
      "settings                                                                9.8 KiB  too small  "
      "   settings_small\\x0a.tar.gz\n"
      "settings       2024-03-05 07:04  solo2  timer                          19.5 KiB  yes        "
      "   settings_20240305_07-04_solo2.auto.tar.gz\n"
      "settings       2024-03-04 07:04  duo2   hand                           19.5 KiB  other "
      "model   settings_20240304_07-04_duo2.tar.gz\n"
      "configuration  2024-03-05 07:04  solo2  hand   b        smb.conf       19.5 KiB  yes        "
      "   configuration_ver_b_20240305_07-04_solo2.tar.gz  user_files\n"
      "4 backups, 69.0 KiB in " +
          medium_.path() +
          "/qor-stowline\n"
          "other files:\n"
          "  restore_me.sh\n"
          "the next scheduled backup deletes nothing\n");
}

TEST_F(ListTest, WhatANameSaysOfItsModelAndVersionCannotReachTheTerminalOrBreakTheJson) {
  const std::string name = "configuration_ver_\x1b[2J_20240305_07-04_\xff.tar.gz";
  add(name, 20000);
  const std::vector<std::string> lines = linesOf(list({}).output);
  EXPECT_EQ(
      std::ranges::count_if(
          lines, [](const std::string& line) { return line.find('\x1b') != std::string::npos; }),
      0);
  const Json json = Json::parse(list({"--json"}).output);
  const Json& set = json["sets"].back();
  EXPECT_EQ(set["model"], "\\xff");
  EXPECT_EQ(set["version"], "\x1b[2J");
  EXPECT_EQ(Json::parse(list({"--json", "--model", "\xff"}).output)["model"], "\\xff");
  const Outcome refused = run({kStowline, "show", std::string("/none/settings_\x1b[31m.tar.gz")});
  EXPECT_EQ(refused.errors,
            "stowline: No such file or directory: '/none/settings_\\x1b[31m.tar.gz'\n");
}

TEST_F(ListTest, ModelThatNothingIsForIsSaid) {
  fs::remove(fs::path(medium_ / "qor-stowline") / "settings_small\n.tar.gz");
  const std::vector<std::string> lines = linesOf(list({"--model", "Solo2"}).output);
  EXPECT_EQ(std::ranges::count(lines, "none of them is for a receiver of the model Solo2"), 1);
}

TEST_F(ListTest, NextDeletionsStandALineEach) {
  for (const char* day : {"01", "02", "03"}) {
    add(std::string("settings_202402") + day + "_07-04_solo2.auto.tar.gz", 5);
  }
  const std::vector<std::string> lines = linesOf(list({"--model", "solo2"}).output);
  ASSERT_GT(lines.size(), 3U);
  EXPECT_EQ(std::vector<std::string>(lines.end() - 3, lines.end()),
            (std::vector<std::string>{
                "the next scheduled backup deletes:", "  settings_20240202_07-04_solo2.auto.tar.gz",
                "  settings_20240201_07-04_solo2.auto.tar.gz"}));
}

TEST_F(ListTest, JsonHasTheSame) {
  const Outcome outcome = list({"--json", "--model", "duo2"});
  EXPECT_EQ(outcome.status, 0);
  const Json small = {{"kind", "settings"},
                      {"name", "settings_small\n.tar.gz"},
                      {"size", 9999},
                      {"time", nullptr},
                      {"model", nullptr},
                      {"scheduled", nullptr},
                      {"version", nullptr},
                      {"keeps", Json::array()},
                      {"companions", Json::array()},
                      {"restorable", "too small"}};
  const Json scheduled = {{"kind", "settings"},
                          {"name", "settings_20240305_07-04_solo2.auto.tar.gz"},
                          {"size", 20000},
                          {"time", "2024-03-05 07:04"},
                          {"model", "solo2"},
                          {"scheduled", true},
                          {"version", nullptr},
                          {"keeps", Json::array()},
                          {"companions", Json::array()},
                          {"restorable", "other model"}};
  const Json own = {{"kind", "settings"},
                    {"name", "settings_20240304_07-04_duo2.tar.gz"},
                    {"size", 20000},
                    {"time", "2024-03-04 07:04"},
                    {"model", "duo2"},
                    {"scheduled", false},
                    {"version", nullptr},
                    {"keeps", Json::array()},
                    {"companions", Json::array()},
                    {"restorable", "yes"}};
  const std::string archive = "configuration_ver_b_20240305_07-04_solo2.tar.gz";
  const Json configuration = {{"kind", "configuration"},
                              {"name", archive},
                              {"size", 20000},
                              {"time", "2024-03-05 07:04"},
                              {"model", "solo2"},
                              {"scheduled", false},
                              {"version", "b"},
                              {"keeps", {"/etc/samba/smb.conf"}},
                              {"companions", {{{"name", archive + "_user_files"}, {"size", 677}}}},
                              {"restorable", "other model"}};
  EXPECT_EQ(Json::parse(outcome.output), (Json{{"directory", medium_.path() + "/qor-stowline"},
                                               {"model", "duo2"},
                                               {"sets", {small, scheduled, own, configuration}},
                                               {"others", {"restore_me.sh"}},
                                               {"unreadable", Json::array()},
                                               {"size", 70676},
                                               {"next_scheduled_deletes", Json::array()}}));
}

TEST_F(ListTest, EntryThatCannotBeReachedIsMarkedAndHidesNothing) {
  const std::string name = "settings_20240306_07-04_solo2.tar.gz";
  medium_.makeDirectory("qor-stowline/" + name);
  const std::string mount = mountDead(medium_ / ("qor-stowline/" + name));
  if (const auto reason = whyNot(mount)) GTEST_SKIP() << *reason;
  const auto listThere = [&](const std::vector<std::string>& options) {
    std::vector<std::string> argv = inMountNamespace(mount);
    argv.insert(argv.end(), {kStowline, "list", medium_.path()});
    argv.insert(argv.end(), options.begin(), options.end());
    return run(argv);
  };
  const Outcome outcome = listThere({});
  EXPECT_EQ(outcome.status, 0);
  const std::vector<std::string> lines = linesOf(outcome.output);
  EXPECT_EQ(std::ranges::count(lines,
                               "cannot be read: " + name + ": Transport endpoint is not connected"),
            1);
  const Json json = Json::parse(listThere({"--json"}).output);
  const Json unreadable = {{"name", name}, {"error", "Transport endpoint is not connected"}};
  EXPECT_EQ(json["unreadable"], Json::array({unreadable}));
  EXPECT_EQ(json["sets"].size(), 5U);
  EXPECT_EQ(json["sets"][1]["restorable"], "unreadable");
}

TEST_F(ListTest, MediumOrDirectoryThatCannotBeReachedIsSaidInOneLine) {
  const std::string directory = medium_ / "qor-stowline";
  if (const auto reason = whyNot(mountDead(directory))) GTEST_SKIP() << *reason;
  const std::pair<std::string, const char*> cases[] = {
      {mountDead(medium_.path()), "Transport endpoint is not connected"},
      {mountSilent(directory), "Connection timed out"},
  };
  for (const auto& [mount, reason] : cases) {
    std::vector<std::string> argv = inMountNamespace(mount);
    argv.insert(argv.end(), {"timeout", "60", kStowline, "list", medium_.path()});
    const Outcome outcome = run(argv);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, std::string("stowline: ") + reason + ": '" + directory + "'\n");
  }
}

TEST(ListRefusals, OneLineSaysWhatIsWrong) {
  const support::TemporaryDirectory empty;
  const support::TemporaryDirectory medium;
  medium.makeDirectory("qor-stowline");
  struct Case {
    std::vector<std::string> arguments;
    int status;
    std::string line;
  };
  const Case cases[] = {
      {{}, 2, "stowline: MEDIUM is required (see 'stowline list --help')\n"},
      {{empty.path()},
       1,
       "stowline: there are no backups: '" + empty.path() + "' has no directory qor-stowline\n"},
      {{medium / "qor-stowline"},
       1,
       "stowline: there are no backups: '" + (medium / "qor-stowline") +
           "' has no directory qor-stowline; name the directory that it lies in\n"},
      {{empty / "none"}, 1, "stowline: No such file or directory: '" + (empty / "none") + "'\n"},
  };
  for (const Case& one : cases) {
    std::vector<std::string> argv = {kStowline, "list"};
    argv.insert(argv.end(), one.arguments.begin(), one.arguments.end());
    const Outcome outcome = run(argv);
    EXPECT_EQ(outcome.status, one.status);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, one.line);
  }
}

}  // namespace
}  // namespace command_test
