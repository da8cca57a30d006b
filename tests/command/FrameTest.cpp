#include <string>
#include <vector>

#include "tests/command/DeskTest.h"

namespace command_test {
namespace {

using FrameTest = DeskTest;

constexpr const char* kScript = "restore_hello.sh";
constexpr const char* kRunQuestion =
    "Are you sure you want to run\nfollowing script:\nrestore_hello.sh";

TEST_F(FrameTest, ShowsOneFrameAfterTheOpeningAndOneAfterEveryWord) {
  const Play play =
      receiver().play("backup", "down down down down up frame select:installed wait red");

  const std::vector<Json> expected = {
      menuFrame("", "backup", 0),      menuFrame("down", "backup", 1),
      menuFrame("down", "backup", 2),  menuFrame("down", "backup", 3),
      menuFrame("down", "backup", 3),  menuFrame("up", "backup", 2),
      menuFrame("frame", "backup", 2), menuFrame("select:installed", "backup", 1),
      menuFrame("wait", "backup", 1),  closedFrame("red"),
  };
  EXPECT_EQ(play.lines, expected);
  EXPECT_EQ(play.status, 0);
  EXPECT_EQ(play.errors, "");
}

TEST_F(FrameTest, OpensTheRestoreMenuWithItsSixRows) {
  const Play play = receiver().play("restore", "right exit frame");

  const std::vector<Json> expected = {menuFrame("", "restore", 0), menuFrame("right", "restore", 5),
                                      closedFrame("exit"), closedFrame("frame")};
  EXPECT_EQ(play.lines, expected);
}

TEST_F(FrameTest, OpensTheBackupMenuUnlessTold) {
  const Outcome desk = run(
      {kStowline, "desk", "--receiver", receiver().tree(), "--frames", "json", "--play", "exit"});

  const std::vector<std::string> lines = linesOf(desk.output);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(Json::parse(lines[0]), menuFrame("", "backup", 0));
}

TEST_F(FrameTest, KeysWithoutAnActionChangeNothing) {
  const std::vector<std::string> keys = {"green", "yellow", "blue", "0", "1", "2", "3",
                                         "4",     "5",      "6",    "7", "8", "9", "left"};
  std::string words;
  std::vector<Json> expected = {menuFrame("", "backup", 0)};
  for (const std::string& key : keys) {
    words += key + " ";
    expected.push_back(menuFrame(key, "backup", 0));
  }
  EXPECT_EQ(receiver().play("backup", words).lines, expected);
}

TEST_F(FrameTest, TimeOutClosesABoxThatHasOneAndLeavesAQuestion) {
  const std::vector<Json> box =
      receiver().play("backup", "select:installed ok frame timeout timeout").lines;
  const Json done =
      boxFrame("ok", "info", "QOR Stowline", "List of installed plugins was created succesfully");
  Json still_done = done;
  still_done["key"] = "frame";
  EXPECT_EQ(box,
            (std::vector<Json>{
                menuFrame("", "backup", 0), menuFrame("select:installed", "backup", 1), done,
                still_done, menuFrame("timeout", "backup", 1), menuFrame("timeout", "backup", 1)}));

  const std::vector<Json> question =
      receiver().play("restore", "select:script ok ok timeout").lines;
  EXPECT_EQ(question.back(), questionFrame("timeout", "QOR Stowline", kRunQuestion));
}

TEST_F(FrameTest, OkAndExitCloseABoxBeforeItsTimeOut) {
  for (const std::string key : {"ok", "exit"}) {
    SCOPED_TRACE(key);
    const Play play = receiver().play("backup", "select:installed ok " + key);
    EXPECT_EQ(play.last(), menuFrame(key, "backup", 1));
  }
}

TEST_F(FrameTest, ExitAnswersAQuestionWithNo) {
  const Play play = receiver().play("restore", "select:script ok ok exit wait");

  const std::vector<Json> expected = {
      menuFrame("", "restore", 0),
      menuFrame("select:script", "restore", 5),
      listFrame("ok", {kScript}, 0, "Start"),
      questionFrame("ok", "QOR Stowline", kRunQuestion),
      listFrame("exit", {kScript}, 0, "Start"),
      listFrame("wait", {kScript}, 0, "Start"),
  };
  EXPECT_EQ(play.lines, expected);
  EXPECT_EQ(play.trace, std::vector<std::string>());
}

TEST_F(FrameTest, OkAnswersNoOnceTheCursorIsOnNo) {
  const Play play = receiver().play("restore", "select:script ok ok down ok wait");

  ASSERT_EQ(play.lines.size(), 7U);
  EXPECT_EQ(play.lines[4], questionFrame("down", "QOR Stowline", kRunQuestion, 1));
  EXPECT_EQ(play.last(), listFrame("wait", {kScript}, 0, "Start"));
  EXPECT_EQ(play.trace, std::vector<std::string>());
}

TEST_F(FrameTest, PrintsBoxesOfTextUnlessTold) {
  const Outcome desk =
      run({kStowline, "desk", "--receiver", receiver().tree(), "--play", "select:installed ok"});

  EXPECT_EQ(desk.output, R"(
+-- QOR Stowline (Backup) -------------------------------------------------+
| > Backup/restore device : /media/hdd/                                    |
|     set device for directory qor-stowline                                |
|   Backup installed plugins                                               |
|     creates a list of installed plugins, skins and softcams              |
|   Backup channel settings                                                |
|     save channel and bouquet settings                                    |
|   Backup configurations                                                  |
|     save common configurations for GUI, plugins and softcams             |
|                                                                          |
| [red] Exit                                                               |
+--------------------------------------------------------------------------+

[select:installed]
+-- QOR Stowline (Backup) -------------------------------------------------+
|   Backup/restore device : /media/hdd/                                    |
|     set device for directory qor-stowline                                |
| > Backup installed plugins                                               |
|     creates a list of installed plugins, skins and softcams              |
|   Backup channel settings                                                |
|     save channel and bouquet settings                                    |
|   Backup configurations                                                  |
|     save common configurations for GUI, plugins and softcams             |
|                                                                          |
| [red] Exit                                                               |
+--------------------------------------------------------------------------+

[ok]
+-- QOR Stowline [info] ---------------------------------------------------+
| List of installed plugins was created succesfully                        |
+--------------------------------------------------------------------------+
)");
  EXPECT_EQ(desk.status, 0);
  EXPECT_EQ(desk.errors, "");
}

}  // namespace
}  // namespace command_test
