#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

struct Deleting : RestoreListTest {
  /// Opens a list of two backups, of which the newer one is selected, presses yellow, and forgets
  /// the operations so far.
  void ask() {
    addFile("configuration_1.tar.gz");
    addFile("configuration_2.tar.gz");
    addFile("configuration_2.tar.gz_user_files");
    openList("configrestore");
    list().press("yellow");
    record.take();
  }
};

const std::string kNewer = kDirectory + "/configuration_2.tar.gz";

TEST_F(Deleting, TranslatesTheJoinedTextAndNotTheFixedTextAlone) {
  host.translations = {
      {"Are you sure you want to delete\nfollowing backup:\n", "wrong"},
      {"Are you sure you want to delete\nfollowing backup:\nconfiguration_2.tar.gz", "joined"}};
  ask();
  EXPECT_EQ(described(host.opened.back().arguments.at(0)), "\"joined\"");
}

TEST_F(Deleting, RemovesThatOneFileAndListsAfresh) {
  ask();
  host.answer(true);
  EXPECT_EQ(record.take(), exists(kNewer) + "os.remove(" + quoted(kNewer) + ")\n" +
                               listed({"configuration_1.tar.gz"}));
  EXPECT_TRUE(host.system.has(kNewer + "_user_files"));
  EXPECT_EQ(list().attribute("exe"), "False");
}

TEST_F(Deleting, SkipsAFileThatVanishedMeanwhileAndListsAfresh) {
  ask();
  host.system.dropFile(kNewer);
  host.answer(true);
  EXPECT_EQ(record.take(), exists(kNewer) + listed({"configuration_1.tar.gz"}));
  EXPECT_EQ(list().attribute("exe"), "False");
}

TEST_F(Deleting, AnyAnswerButYesChangesNothing) {
  for (const Object& answer : {Object(false), Object(), Object("yes"_t), Object(2)}) {
    SCOPED_TRACE(described(answer));
    ask();
    host.answer(answer);
    EXPECT_EQ(record.take(), "");
    EXPECT_TRUE(host.system.has(kNewer));
    EXPECT_EQ(list().attribute("exe"), "False");
  }
  list().call("startDelete");
  EXPECT_EQ(record.take(), "");
}

TEST_F(Deleting, LastFileLeavesAnEmptyListWithYellowStillEnabled) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  list().press("yellow");
  host.answer(true);
  EXPECT_EQ(described(rows().rows), "[]");
  EXPECT_EQ(list().attribute("entry"), "True");
  record.take();
  list().press("yellow");
  EXPECT_EQ(record.take(), "self[\"filelist\"].getCurrent()\n");
}

TEST_F(Deleting, FailedRemovalKeepsOkAndYellowDisabled) {
  ask();
  journal.failOn("os.remove(" + quoted(kNewer) + ")", {"OSError", "read-only", 30});
  EXPECT_THROW(host.answer(true), plain::Error);
  EXPECT_EQ(list().attribute("exe"), "True");
  record.take();
  for (const char* key : {"ok", "green", "yellow"}) list().press(key);
  EXPECT_EQ(record.take(), "");
}

}  // namespace
}  // namespace stowline
