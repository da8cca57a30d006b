#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desk/skin/Skin.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

constexpr Size kSmall = {80, 24};   // the television's area is 80x22
constexpr Size kLarge = {132, 43};  // and here 132x41

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
  EXPECT_EQ(pictureOf(confirmation(), kSmall), R"(





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

TEST(SkinView, ConfirmationOnALargeTerminal) {
  EXPECT_EQ(pictureOf(confirmation(), kLarge), R"(











     ┌─ Stowline ─────────────────────────────────────────────────────────────────────────────────────────────────────────────┐
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                 Restore this archive?                                                  │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                The receiver restarts.                                                  │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │                                                                                                                        │
     │    r  Exit                           g  Ok                                                                             │
     └────────────────────────────────────────────────────────────────────────────────────────────────────────────────────────┘











 [red] Exit   [green] Ok
 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(SkinView, ConfirmationInAscii) {
  EXPECT_EQ(shown(drawn(confirmation(), {64, 18}, ascii()).canvas), R"(



  +- Stowline -----------------------------------------------+
  |                                                          |
  |                                                          |
  |                                                          |
  |                  Restore this archive?                   |
  |                                                          |
  |                  The receiver restarts.                  |
  |                                                          |
  |                                                          |
  |                                                          |
  |  r Exit          g Ok                                    |
  +----------------------------------------------------------+



)");
}

TEST(SkinView, LabelsOfKeysCanBeClicked) {
  EXPECT_EQ(clicks(drawn(confirmation(), {80, 22})),
            (std::vector<std::string>{"red 8,15 17x1", "green 29,15 17x1"}));
  EXPECT_EQ(clicks(drawn(confirmation(), {132, 41})),
            (std::vector<std::string>{"red 13,27 28x2", "green 47,27 28x2"}));
}

TEST(SkinView, FaultyLayoutIsNamed) {
  EXPECT_THROW(pictureOf(frame({{"skin", "<screen"}})), SkinError);
}

}  // namespace
}  // namespace desk::terminal
