#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"
#include "tests/support/command/Expected.h"

namespace command_test {
namespace {

using SettingsRestoreTest = DeskTest;

constexpr const char* kOpenList = "select:channel ok ";
constexpr const char* kArchive = "settings_20240305_07-04_solo2.tar.gz";

const Json kDone = boxFrame("ok", "info", "", "Restoring settings finished successfully");
const Json kFailed = boxFrame("ok", "error", "", "Restoring settings failed");

/// The snapshot without what every play leaves behind.
Snapshot withoutLog(Snapshot content) {
  forget(content, "var/log/enigma2.log");
  return content;
}

TEST_F(SettingsRestoreTest, BringsBackTheChannelFilesOfTheArchiveAloneAndChangesNothingElse) {
  receiver().play("backup", "select:channel ok");
  const std::string archive = receiver().backup("settings_", ".tar.gz");
  const Snapshot used = receiver().content();
  receiver().flash();
  receiver().write("/etc/enigma2/userbouquet.later.tv", "#NAME Later\n");
  Snapshot expected = receiver().content();
  for (const std::string& member : settingsMembers(receiver().tree())) expected.erase(member);
  for (const std::string& member : membersOf(receiver().at(inBackups(archive)))) {
    expected[member] = used.at(member);
  }

  const Play play = receiver().play("restore", std::string(kOpenList) + "ok timeout");

  EXPECT_EQ(
      play.lines,
      (std::vector<Json>{menuFrame("", "restore", 0), menuFrame("select:channel", "restore", 2),
                         listFrame("ok", {archive}), kDone, menuFrame("timeout", "restore", 2)}));
  EXPECT_EQ(play.trace, settingsRestoreCommands(inBackups(archive)));
  EXPECT_EQ(play.log, std::vector<std::string>());
  EXPECT_EQ(changes(expected, withoutLog(receiver().content())), std::vector<std::string>());
}

TEST_F(SettingsRestoreTest, DamagedArchiveLeavesTheReceiverWithoutChannelsAndSaysSo) {
  receiver().write(inBackups(kArchive), std::string(10001, 'x'));
  Snapshot expected = receiver().content();
  for (const std::string& member : settingsMembers(receiver().tree())) expected.erase(member);

  const Play play = receiver().play("restore", std::string(kOpenList) + "ok timeout");

  EXPECT_EQ(
      play.lines,
      (std::vector<Json>{menuFrame("", "restore", 0), menuFrame("select:channel", "restore", 2),
                         listFrame("ok", {kArchive}), kFailed, listFrame("timeout", {kArchive})}));
  EXPECT_EQ(play.trace, settingsRestoreCommands(inBackups(kArchive)));
  EXPECT_EQ(changes(expected, withoutLog(receiver().content())), std::vector<std::string>());
}

}  // namespace
}  // namespace command_test
