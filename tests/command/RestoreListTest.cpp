#include <filesystem>
#include <string>
#include <vector>

#include "tests/command/DeskTest.h"

namespace command_test {
namespace {

using RestoreListTest = DeskTest;

constexpr const char* kNewer = "settings_20240306_07-04_solo2.tar.gz";
constexpr const char* kOlder = "settings_20240305_07-04_solo2.tar.gz";

Json deletionOf(const std::string& name, int selected = 0) {
  return questionFrame("yellow", "", "Are you sure you want to delete\nfollowing backup:\n" + name,
                       selected);
}

void add(const Receiver& receiver, const std::vector<std::string>& names) {
  for (const std::string& name : names) receiver.write(kBackups + "/" + name, "");
}

/// A menu row and what of kManyNames its list shows.
struct List {
  const char* row;
  std::vector<std::string> shown;
  const char* green;
};

const std::vector<std::string> kManyNames = {
    "settings_20240304_07-04.tar.gz",
    "settings_20240305_07-04_solo2.tar.gz",
    "settings_20240306_07-04_duo2.tar.gz",
    "settings_20240307_07-04_solo.tar.gz",
    "settings_20240308_07-04_solo2.auto.tar.gz",
    "settings_20240309_07-04_solo2.tar",
    "settings_solo._solo2.tar.gz",
    "configuration_20240301_07-04_solo2.tar.gz",
    "configuration_ver_a_20240301_07-04_solo2.tar.gz",
    "configuration_ver_c_20240301_07-04_solo2.tar.gz",
    "configuration_ver_c_20240301_07-04_solo2.tar.gz_user_files",
    "configuration_ver_c_20240301_07-04_solose.tar.gz",
    "pluginlist_20240301_07-04_solo2.lst",
    "pluginlist_20240302_07-04_ultimo.lst",
    "pluginlist_x.lst",
    "Backup.sh",
    "backup_me.sh",
    "my_restore.sh",
    "restore_net_zero.sh",
};

const List kLists[] = {
    {"select:plugins", {"pluginlist_x.lst", "pluginlist_20240301_07-04_solo2.lst"}, "Install"},
    {"select:channel",
     {"settings_20240308_07-04_solo2.auto.tar.gz", "settings_20240305_07-04_solo2.tar.gz",
      "settings_20240304_07-04.tar.gz"},
     "Install"},
    {"select:configurations",
     {"configuration_ver_c_20240301_07-04_solo2.tar.gz",
      "configuration_ver_a_20240301_07-04_solo2.tar.gz",
      "configuration_20240301_07-04_solo2.tar.gz"},
     "Install"},
    {"select:script", {"restore_hello.sh", "backup_me.sh"}, "Start"},
};

TEST_F(RestoreListTest, ListsOneKindForThisModelNewestFirst) {
  add(receiver(), kManyNames);
  // A model's tag is "_", the model and a dot: this script is for another one.
  add(receiver(), {"restore_net_zero.sh", "restore_zero_zero.sh"});
  for (const auto& [row, shown, green] : kLists) {
    SCOPED_TRACE(row);
    const Play play = receiver().play("restore", std::string(row) + " ok");
    EXPECT_EQ(play.last(), listFrame("ok", shown, 0, green));
  }
}

TEST_F(RestoreListTest, EmptyListHasNoWorkingKeys) {
  std::filesystem::remove(receiver().at(kBackups + "/restore_hello.sh"));
  for (const auto& [row, shown, green] : kLists) {
    SCOPED_TRACE(row);
    const Play play = receiver().play("restore", std::string(row) + " ok ok green yellow");
    ASSERT_EQ(play.lines.size(), 6U);
    EXPECT_EQ(play.lines[2], listFrame("ok", {}));
    EXPECT_EQ(play.last(), listFrame("yellow", {}));
    EXPECT_EQ(play.trace, std::vector<std::string>());
  }
}

TEST_F(RestoreListTest, RedAndExitCloseIt) {
  for (const std::string key : {"red", "exit"}) {
    EXPECT_EQ(receiver().play("restore", "select:channel ok " + key).last(),
              menuFrame(key, "restore", 2));
  }
}

TEST_F(RestoreListTest, ShowsAndDeletesNamesWithBlanksAndForeignBytes) {
  // As the list shows them: bytes that are no UTF-8 are escaped.
  const std::string blanks = "settings my old box.tar.gz";
  const std::string accent = "settings_\u00e9t\u00e9.tar.gz";
  const std::string foreign = "settings_\xe9t\xe9.tar.gz";
  const std::string shown = "settings_\\xe9t\\xe9.tar.gz";
  add(receiver(), {blanks, accent, foreign});

  const Play play = receiver().play(
      "restore",
      "select:channel ok select:xe9 yellow ok 'select:my old' yellow ok select:settings_ yellow "
      "ok");

  EXPECT_EQ(play.lines,
            (std::vector<Json>{
                menuFrame("", "restore", 0), menuFrame("select:channel", "restore", 2),
                listFrame("ok", {shown, accent, blanks}),
                listFrame("select:xe9", {shown, accent, blanks}), deletionOf(shown),
                listFrame("ok", {accent, blanks}), listFrame("select:my old", {accent, blanks}, 1),
                deletionOf(blanks), listFrame("ok", {accent}),
                listFrame("select:settings_", {accent}), deletionOf(accent), listFrame("ok", {})}));
  EXPECT_EQ(namesIn(receiver().at(kBackups)),
            (std::vector<std::string>{"plugins", "restore_hello.sh"}));
  EXPECT_EQ(play.errors, "");
}

TEST_F(RestoreListTest, DeletesOnlyAfterAYes) {
  add(receiver(), {kNewer, kOlder});
  const Snapshot before = receiver().content();

  const Play no = receiver().play("restore", "select:channel ok yellow exit yellow down ok");
  EXPECT_EQ(no.last(), listFrame("ok", {kNewer, kOlder}));
  Snapshot after = receiver().content();
  forget(after, "var/log/enigma2.log");
  EXPECT_EQ(changes(before, after), std::vector<std::string>());

  const Play yes = receiver().play("restore", "select:channel ok down yellow ok");
  EXPECT_EQ(yes.last(), listFrame("ok", {kNewer}));
  EXPECT_EQ(yes.trace, std::vector<std::string>());
  after = receiver().content();
  forget(after, "var/log/enigma2.log");
  EXPECT_EQ(changes(before, after),
            std::vector<std::string>{"- media/hdd/qor-stowline/" + std::string(kOlder)});
}

TEST_F(RestoreListTest, DeletingTouchesNoCompanion) {
  const std::string archive = "configuration_ver_c_20240301_07-04_solo2.tar.gz";
  add(receiver(), {archive, archive + "_user_files", archive + "_atile_hd"});

  receiver().play("restore", "select:configurations ok yellow ok");

  EXPECT_EQ(namesIn(receiver().at(kBackups)),
            (std::vector<std::string>{archive + "_atile_hd", archive + "_user_files", "plugins",
                                      "restore_hello.sh"}));
}

TEST_F(RestoreListTest, DeletingTheLastOneLeavesAListWhoseKeysDoNothing) {
  add(receiver(), {kNewer});
  const Play play =
      receiver().play("restore", "select:channel ok yellow ok ok yellow green up down");

  ASSERT_EQ(play.lines.size(), 10U);
  const std::vector<Json> rest(play.lines.begin() + 4, play.lines.end());
  EXPECT_EQ(rest, (std::vector<Json>{listFrame("ok", {}), listFrame("ok", {}),
                                     listFrame("yellow", {}), listFrame("green", {}),
                                     listFrame("up", {}), listFrame("down", {})}));
  EXPECT_EQ(play.trace, std::vector<std::string>());
  EXPECT_EQ(play.log, std::vector<std::string>());
}

TEST_F(RestoreListTest, FailedRemovalIsAnErrorAndDisablesTheKeys) {
  // A directory of a backup's name cannot be removed as a file.
  std::filesystem::create_directories(receiver().at(kBackups + "/" + kNewer + "/inside"));
  const Play play = receiver().play("restore", "select:channel ok yellow ok yellow ok");

  ASSERT_EQ(play.events().size(), 1U);
  EXPECT_EQ(play.events()[0]["event"], "error");
  const std::string text = play.events()[0]["text"];
  EXPECT_TRUE(text.starts_with("OSError: ")) << text;
  EXPECT_NE(text.find(kNewer), std::string::npos) << text;
  EXPECT_EQ(play.last(), listFrame("ok", {kNewer}));
  EXPECT_EQ(play.log, std::vector<std::string>{"error: " + text});
}

}  // namespace
}  // namespace command_test
