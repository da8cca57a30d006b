#include <string>
#include <vector>

#include "tests/support/command/DeskTest.h"

namespace command_test {
namespace {

using FrameTest = DeskTest;

TEST_F(FrameTest, OneFollowsTheOpeningAndEveryWord) {
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

TEST_F(FrameTest, AreThePicturesOfATerminalUnlessTold) {
  const Outcome desk = run({"env", "LC_ALL=C.UTF-8", kStowline, "desk", "--receiver",
                            receiver().tree(), "--play", "select:installed ok"});

  EXPECT_EQ(desk.output, R"(
┌─ QOR Stowline (Backup) ──────────────────────────────────────────────────────┐
│ > ▣ Backup/restore device : /media/hdd/                                      │
│       set device for directory qor-stowline                                  │
│   ▣ Backup installed plugins                                                 │
│       creates a list of installed plugins, skins and softcams                │
│   ▣ Backup channel settings                                                  │
│       save channel and bouquet settings                                      │
│   ▣ Backup configurations                                                    │
│       save common configurations for GUI, plugins and softcams               │
│                                                                              │
└──────────────────────────────────────────────────────────────────────── 1/4 ─┘
 [red] Exit

[select:installed]
┌─ QOR Stowline (Backup) ──────────────────────────────────────────────────────┐
│   ▣ Backup/restore device : /media/hdd/                                      │
│       set device for directory qor-stowline                                  │
│ > ▣ Backup installed plugins                                                 │
│       creates a list of installed plugins, skins and softcams                │
│   ▣ Backup channel settings                                                  │
│       save channel and bouquet settings                                      │
│   ▣ Backup configurations                                                    │
│       save common configurations for GUI, plugins and softcams               │
│                                                                              │
└──────────────────────────────────────────────────────────────────────── 2/4 ─┘
 [red] Exit

[ok]
┌─ QOR Stowline (Backup) ──────────────────────────────────────────────────────┐
│   ▣ Backup/restore device : /media/hdd/                                      │
│       set device for directory qor-stowline                                  │
│   ▣ Backup installed plugins                                                 │
│       creates a list of installed plugins, skins and softcams                │
│   ▣ Backup channel settings                                                  │
│       save channel and bouquet settings                                      │
│   ▣ Backup configurations                                                    │
│       save common configurations for GUI, plugins and softcams               │
│           ┌─ QOR Stowline [info] ───────────────────────────────┐            │
│           │                                                     │            │
│           │  List of installed plugins was created succesfully  │            │
│           │                                                     │            │
│           └──────────────────────────────────── closes in 10 s ─┘            │
│                                                                              │
└──────────────────────────────────────────────────────────────────────── 2/4 ─┘
)");
  EXPECT_EQ(desk.status, 0);
  EXPECT_EQ(desk.errors, "");
}

}  // namespace
}  // namespace command_test
