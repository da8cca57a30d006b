#include "tests/plugin/RestoreListTest.h"

namespace stowline {
namespace {

using namespace expected;

struct Deleting : RestoreListTest {
  /// Opens a list of two backups, of which the newer one is selected, and presses yellow.
  void ask() {
    addFile("configuration_1.tar.gz");
    addFile("configuration_2.tar.gz");
    addFile("configuration_2.tar.gz_user_files");
    openList("configrestore");
    peer().press("yellow");
  }
};

const std::string kNewer = kDirectory + "/configuration_2.tar.gz";

TEST_F(Deleting, TranslatesTheJoinedTextAndNotTheFixedTextAlone) {
  host.translations = {
      {"Are you sure you want to delete\nfollowing backup:\n", "wrong"},
      {"Are you sure you want to delete\nfollowing backup:\nconfiguration_2.tar.gz", "joined"}};
  ask();
  EXPECT_EQ(std::get<host::MessageBox>(session.lastOpened()).text, "joined");
}

TEST_F(Deleting, RemovesThatOneFileAndListsAfresh) {
  ask();
  record.take();
  session.answer(true);
  EXPECT_EQ(record.take(), exists(kNewer) + "os.remove(" + quoted(kNewer) + ")\n" +
                               listed({"configuration_1.tar.gz"}));
  EXPECT_TRUE(host.system.has(kNewer + "_user_files"));
  EXPECT_FALSE(list().exe);
}

TEST_F(Deleting, SkipsAFileThatVanishedMeanwhileAndListsAfresh) {
  ask();
  host.system.dropFile(kNewer);
  record.take();
  session.answer(true);
  EXPECT_EQ(record.take(), exists(kNewer) + listed({"configuration_1.tar.gz"}));
  EXPECT_FALSE(list().exe);
}

TEST_F(Deleting, AnyAnswerButYesChangesNothing) {
  for (const host::Value& answer :
       {host::Value(false), host::Value(), host::Value("yes"), host::Value(2)}) {
    SCOPED_TRACE(described(answer));
    ask();
    record.take();
    session.answer(answer);
    EXPECT_EQ(record.take(), "");
    EXPECT_TRUE(host.system.has(kNewer));
    EXPECT_FALSE(list().exe);
  }
  list().startDelete();
  EXPECT_EQ(record.take(), "");
}

TEST_F(Deleting, LastFileLeavesAnEmptyListWithYellowStillEnabled) {
  addFile("settings_1.tar.gz");
  openList("settingrestore");
  peer().press("yellow");
  session.answer(true);
  EXPECT_EQ(rows().rows, std::vector<std::string>{});
  EXPECT_TRUE(list().entry);
  record.take();
  peer().press("yellow");
  EXPECT_EQ(record.take(), "self[\"filelist\"].getCurrent()\n");
}

TEST_F(Deleting, FailedRemovalKeepsOkAndYellowDisabled) {
  ask();
  journal.failOn("os.remove(" + quoted(kNewer) + ")", {"OSError", "read-only", 30});
  EXPECT_THROW(session.answer(true), host::Error);
  EXPECT_TRUE(list().exe);
  record.take();
  for (const char* key : {"ok", "green", "yellow"}) peer().press(key);
  EXPECT_EQ(record.take(), "");
}

}  // namespace
}  // namespace stowline
