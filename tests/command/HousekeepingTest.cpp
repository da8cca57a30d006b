#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "desk/model/Host.h"
#include "host/native/Enclosure.h"
#include "plugin/src/BackupActions.h"
#include "plugin/src/Setup.h"
#include "tests/command/DeskTest.h"

namespace command_test {
namespace {

using HousekeepingTest = DeskTest;

class Nobody : public desk::Observer {
 public:
  void onLogLine(const std::string& /*line*/) override {}
  void onCommand(const std::string& /*command*/) override {}
  void onError(const std::string& /*text*/) override {}
};

/// What a scheduled backup runs, in this process and for good inside the tree.
void runScheduledBackup(const std::filesystem::path& tree) {
  native::enterTree(tree);
  if (chdir("/home/root") != 0) throw std::runtime_error("no home");
  setenv("PATH", "/bin:/sbin:/usr/bin:/usr/sbin", 1);
  Nobody observer;
  desk::Jobs jobs;
  desk::Host host(jobs, observer);
  stowline::load(host);
  stowline::BackupActions actions(host, "auto");
  for (const auto& result :
       {actions.createSettingFile(), actions.createConfigFile(), actions.createPluginList()}) {
    if (!result.equalsTrue()) std::cout << "a backup has failed" << std::endl;
  }
  actions.houseKeeping();
}

std::string settings(const std::string& day, const std::string& model, const std::string& end) {
  return "settings_202403" + day + "_07-04_" + model + end;
}

std::string configuration(const std::string& day, const std::string& end) {
  return "configuration_ver_c_202403" + day + "_07-04_solo2.auto.tar.gz" + end;
}

std::string pluginList(const std::string& day) {
  return "pluginlist_202403" + day + "_07-04_solo2.auto.lst";
}

/// The scheduled backups that go, in the order in which they are said to.
const std::vector<std::string> kOutdated = {
    settings("03", "solo2", ".auto.tar.gz"),
    settings("02", "solo2", ".auto.tar.gz"),
    settings("01", "solo2", ".auto.tar.gz"),
    configuration("02", ""),
    configuration("02", "_user_files"),
    configuration("01", ""),
    configuration("01", "_atile_hd"),
    configuration("01", "_user_files"),
    "configuration_ver_b_20240331_07-04_solo2.auto.tar.gz",
    pluginList("01"),
};

const std::vector<std::string> kKept = {
    settings("05", "solo2", ".auto.tar.gz"),
    settings("04", "solo2", ".auto.tar.gz"),
    settings("01", "solo2", ".tar.gz"),
    settings("01", "duo2", ".auto.tar.gz"),
    settings("02", "duo2", ".auto.tar.gz"),
    settings("03", "duo2", ".auto.tar.gz"),
    settings("04", "duo2", ".auto.tar.gz"),
    settings("05", "duo2", ".auto.tar.gz"),
    configuration("04", ""),
    configuration("04", "_user_files"),
    configuration("03", ""),
    configuration("00", "_user_files"),
    "configuration_ver_c_20240301_07-04_solo2.tar.gz",
    pluginList("03"),
    pluginList("02"),
    "plugins",
    "restore_hello.sh",
};

/// The stamp of the names that the run itself has made: the newest.
std::string stampOfRun(std::vector<std::string> names) {
  const std::string prefix = "pluginlist_";
  std::erase_if(names, [&](const std::string& name) { return !name.starts_with(prefix); });
  const std::string newest = *std::ranges::max_element(names);
  return newest.substr(prefix.size(), newest.size() - prefix.size() - std::string(".lst").size());
}

TEST_F(HousekeepingTest, KeepsTheThreeNewestScheduledBackupsOfEveryKind) {
  for (const auto& names : {kOutdated, kKept}) {
    for (const std::string& name : names) {
      if (!receiver().exists(kBackups + "/" + name)) receiver().write(kBackups + "/" + name, "x");
    }
  }

  const Outcome outcome = runForked([this] { runScheduledBackup(receiver().tree()); });

  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  std::vector<std::string> lines;
  for (const std::string& name : kOutdated) {
    lines.push_back("[Qor Stowline] Housekeeping --> remove file " + kBackups + "/" + name);
  }
  EXPECT_EQ(linesOf(outcome.output), lines);

  const std::string stamp = stampOfRun(namesIn(receiver().at(kBackups)));
  std::vector<std::string> expected = kKept;
  for (const std::string& name :
       {"settings_" + stamp + ".tar.gz", "configuration_ver_c_" + stamp + ".tar.gz",
        "configuration_ver_c_" + stamp + ".tar.gz_user_files", "pluginlist_" + stamp + ".lst"}) {
    expected.push_back(name);
  }
  std::ranges::sort(expected);
  EXPECT_EQ(namesIn(receiver().at(kBackups)), expected);
}

}  // namespace
}  // namespace command_test
