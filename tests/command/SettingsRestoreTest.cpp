#include <string>
#include <vector>

#include "tests/command/DeskTest.h"
#include "tests/command/Expected.h"

namespace command_test {
namespace {

using SettingsRestoreTest = DeskTest;

constexpr const char* kOpenList = "select:channel ok ";
constexpr const char* kArchive = "settings_20240305_07-04_solo2.tar.gz";
constexpr std::size_t kSmallest = 10000;

const Json kDone = boxFrame("ok", "info", "", "Restoring settings finished successfully");
const Json kFailed = boxFrame("ok", "error", "", "Restoring settings failed");

/// Bytes that no tar takes for an archive.
std::string garbage(std::size_t size) {
  std::string bytes;
  bytes.resize(size, 'x');
  return bytes;
}

/// The snapshot without what every play leaves behind.
Snapshot withoutLog(Snapshot content) {
  forget(content, "var/log/enigma2.log");
  return content;
}

TEST_F(SettingsRestoreTest, BringsBackTheChannelFilesAndNothingElse) {
  receiver().play("backup", "select:channel ok");
  const std::string archive = receiver().backup("settings_", ".tar.gz");
  const Snapshot used = receiver().content();
  receiver().flash();
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

TEST_F(SettingsRestoreTest, RemovesChannelFilesThatTheArchiveDoesNotHold) {
  receiver().play("backup", "select:channel ok");
  receiver().write("/etc/enigma2/userbouquet.later.tv", "#NAME Later\n");

  EXPECT_EQ(receiver().play("restore", std::string(kOpenList) + "green").last()["text"],
            kDone["text"]);
  EXPECT_FALSE(receiver().exists("/etc/enigma2/userbouquet.later.tv"));
}

TEST_F(SettingsRestoreTest, DamagedArchiveLeavesTheReceiverWithoutChannelsAndSaysSo) {
  receiver().write(inBackups(kArchive), garbage(kSmallest + 1));
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

TEST_F(SettingsRestoreTest, IgnoresAnArchiveOfOneByteLessThanTheSmallest) {
  receiver().write(inBackups(kArchive), garbage(kSmallest - 1));
  const Snapshot before = receiver().content();

  const Play play = receiver().play("restore", std::string(kOpenList) + "ok");

  EXPECT_EQ(play.last(), listFrame("ok", {kArchive}));
  EXPECT_EQ(play.trace, std::vector<std::string>());
  EXPECT_EQ(changes(before, withoutLog(receiver().content())), std::vector<std::string>());
}

TEST_F(SettingsRestoreTest, TakesTheSmallestArchive) {
  receiver().play("backup", "select:channel ok");
  receiver().renameBackup(receiver().backup("settings_", ".tar.gz"), kArchive);
  receiver().write(inBackups(kArchive), receiver().read(inBackups(kArchive)).substr(0, kSmallest));

  const Play play = receiver().play("restore", std::string(kOpenList) + "ok");

  EXPECT_EQ(play.trace, settingsRestoreCommands(inBackups(kArchive)));
}

}  // namespace
}  // namespace command_test
