#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desk/skin/Skin.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// A confirmation, as screens have them.
constexpr const char* kConfirmation = R"(
<screen name="Confirmation" position="center,center" size="650,250">
  <widget name="messagetext" position="10,10" size="630,210" font="Regular;20" halign="center"
          valign="center" transparent="1" />
  <widget source="key_red" render="Label" position="40,213" zPosition="1" size="150,40"
          font="Regular;20" halign="left" valign="center" />
  <widget source="key_green" render="Label" position="225,213" zPosition="1" size="150,40"
          font="Regular;20" halign="left" valign="center" />
  <ePixmap pixmap="/pictures/button_red.png" position="10,220" size="25,25" alphatest="on" />
  <ePixmap pixmap="/pictures/button_green.png" position="195,220" size="25,25" />
</screen>)";

Json confirmation() {
  return frame({{"title", "Stowline"},
                {"widgets",
                 {{"key_green", "Ok"},
                  {"key_red", "Exit"},
                  {"messagetext", "Restore this archive?\n\nThe receiver restarts."}}},
                {"skin", kConfirmation}});
}

Picture drawn(const Json& frame, Size area, const Lettering& lettering = utf8()) {
  Picture picture{Canvas(area, lettering)};
  drawSkin(picture, {0, 0, area.columns, area.rows}, frame);
  return picture;
}

TEST(SkinView, ConfirmationOnASmallTerminal) {
  EXPECT_EQ(pictureOf(confirmation(), {80, 24}), R"(





   ┌─ Stowline ─────────────────────────────────────────────────────────────┐
   │                                                                        │
   │                                                                        │
   │                                                                        │
   │                         Restore this archive?                          │
   │                                                                        │
   │                         The receiver restarts.                         │
   │                                                                        │
   │                                                                        │
   │                                                                        │
   │  r Exit               g Ok                                             │
   └────────────────────────────────────────────────────────────────────────┘





 [red] Exit   [green] Ok
 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(SkinView, LayoutIsScaledToTheTerminal) {
  EXPECT_EQ(boxes(drawn(confirmation(), {132, 41}).canvas).at(0),
            (Lines{"5,11 122x19 Stowline",
                   "7                                                  Restore this archive?",
                   "10                                                 The receiver restarts.",
                   "17     r  Exit                           g  Ok"}));
  EXPECT_EQ(boxes(drawn(confirmation(), {64, 18}, ascii()).canvas).at(0),
            (Lines{"2,3 60x12 Stowline", "4                   Restore this archive?",
                   "6                   The receiver restarts.", "10   r Exit          g Ok"}));
}

TEST(SkinView, LabelsOfKeysCanBeClicked) {
  EXPECT_EQ(clicks(drawn(confirmation(), {80, 22})), (Lines{"red 8,15 17x1", "green 29,15 17x1"}));
  EXPECT_EQ(clicks(drawn(confirmation(), {132, 41})),
            (Lines{"red 13,27 28x2", "green 47,27 28x2"}));
}

TEST(SkinView, FaultyLayoutIsNamed) {
  EXPECT_THROW(pictureOf(frame({{"skin", "<screen"}})), SkinError);
}

}  // namespace
}  // namespace desk::terminal
