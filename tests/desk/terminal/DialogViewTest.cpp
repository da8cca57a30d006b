#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

using Type = MessageContent::Type;

LayerView message(const std::string& text, Type type = Type::info, const std::string& title = "") {
  return {.screen = "MessageBox",
          .title = title,
          .content = MessageContent{.type = type, .text = text}};
}

LayerView question(const std::string& text, std::size_t selected) {
  LayerView layer = message(text, Type::yesno);
  layer.rows = rows({{"yes"}, {"no"}});
  layer.selected = selected;
  return layer;
}

TEST(DialogView, MessageStandsInTheMiddle) {
  EXPECT_EQ(boxOf(message("The backup is done.")),
            (Lines{"12,6 40x5 [info]", "2   The backup is done."}));
}

TEST(DialogView, TypeIsNamedAfterTheTitleAndErrorsHaveTheirInk) {
  const struct {
    const char* title;
    Type type;
    const char* edge;
  } messages[] = {
      {"", Type::info, "            ┌─ [info] ─────────────────────────────┐"},
      {"", Type::error, "            ┌─ [error] ────────────────────────────┐"},
      {"Note", Type::yesno, "            ┌─ Note [yesno] ───────────────────────┐"},
  };
  for (const auto& [title, type, edge] : messages) {
    const Canvas canvas = canvasOf(message("", type, title));
    EXPECT_EQ(canvas.line(7), edge);
    EXPECT_EQ(inInk(canvas, 7, Ink::error), type == Type::error ? edge : "") << edge;
  }
}

TEST(DialogView, SecondsLeftAreInThePicture) {
  Television television(utf8());
  television.show(frame(message("Done.")));
  for (const int left : {10, 9, 0}) {
    const Moment moment = {.now = kStart, .seconds_left = left};
    const std::string edge = inInk(television.picture(kTerminal, moment).canvas, 10, Ink::notice);
    EXPECT_EQ(edge.substr(edge.find_first_not_of(' ')), "closes in " + std::to_string(left) + " s");
  }
}

TEST(DialogView, LongTitleWidensIt) {
  EXPECT_EQ(boxOf(message("", Type::info, "What was found on the hard disk today")),
            Lines{"7,7 50x4 What was found on the hard disk today [info]"});
}

TEST(DialogView, LinesAndEmptyLinesOfAMessageStay) {
  EXPECT_EQ(boxOf(message("One\n\n  two\n")), (Lines{"12,5 40x7 [info]", "2   One", "4     two"}));
}

TEST(DialogView, LongLinesAreWrapped) {
  EXPECT_EQ(boxOf(message("The archive of this receiver could not be written, for there is no "
                          "room left on the device \u65e5\u672c.")),
            (Lines{"2,6 60x6 [info]", "2   The archive of this receiver could not be written, for",
                   "3   there is no room left on the device \u65e5\u672c."}));
}

TEST(DialogView, QuestionHasTheCursorOnEitherAnswer) {
  EXPECT_EQ(boxOf(question("Restore?\n\nThe receiver restarts.", 0)),
            (Lines{"12,4 40x10 [yesno]", "2   Restore?", "4   The receiver restarts.", "6   > yes",
                   "7     no"}));
  EXPECT_EQ(boxOf(question("Restore this archive?", 1)),
            (Lines{"12,5 40x8 [yesno]", "2   Restore this archive?", "4     yes", "5   > no"}));
}

TEST(DialogView, AnswersCanBeClicked) {
  Television television(utf8());
  television.show(frame(question("Restore?", 0)));
  EXPECT_EQ(clicks(television.picture(kTerminal, kAtStart)),
            (Lines{"row:0 15,9 34x1", "row:1 15,10 34x1", "ok 1,19 8x1", "exit 12,19 8x1",
                   "log 23,19 5x1", "help 31,19 6x1"}));
}

TEST(DialogView, TextThatIsTooLongIsCutAndLeavesRoomForTheAnswers) {
  Lines expected = {"12,0 40x18 [yesno]"};
  for (int line = 0; line < 10; ++line) {
    expected.push_back(std::to_string(line + 2) + "   line " + std::to_string(line));
  }
  expected.insert(expected.end(), {"12   …", "14   > yes", "15     no"});
  EXPECT_EQ(boxOf(question(manyLines(30), 0)), expected);
  expected = boxOf(question(manyLines(30), 0), kTerminal, ascii());
  EXPECT_EQ(expected.at(11), "12   ~");
}

TEST(DialogView, LiesOverTheScreenBeneathWhichCannotBeClicked) {
  LayerView list = desk::terminal::list(3, 0);
  list.title = "Archives";
  LayerView dialog = question("Restore?", 0);
  dialog.id = 1;
  Television television(utf8());
  television.show({.layers = {list, dialog}});
  const Picture picture = television.picture(kTerminal, kAtStart);
  EXPECT_EQ(
      boxes(picture.canvas),
      (std::vector<Lines>{{"0,0 64x18 Archives, 1/3", "1    row 0", "2    row 1", "3    row 2",
                           "5            ┌─ [yesno] ────────────────────────────┐",
                           "6            │                                      │",
                           "7            │  Restore?                            │",
                           "8            │                                      │",
                           "9            │  > yes                               │",
                           "10            │    no                                │",
                           "11            │                                      │",
                           "12            └──────────────────────────────────────┘"},
                          {"12,5 40x8 [yesno]", "2   Restore?", "4   > yes", "5     no"}}));
  EXPECT_EQ(picture.actionAt(4, 1), "");
  EXPECT_EQ(picture.actionAt(20, 9), "row:0");
}

TEST(DialogView, ScreenWithALayoutOfItsOwnIsADialogOfItsTexts) {
  const LayerView confirmation = {
      .title = "Stowline",
      .content = ScreenContent{.texts = {{"key_red", "Exit"},
                                         {"key_green", "Ok"},
                                         {"messagetext", "Restore this?\n\nIt restarts."}},
                               .skin = "<screen/>"}};
  EXPECT_EQ(pictureOf(confirmation), R"(





            ┌─ Stowline ───────────────────────────┐
            │                                      │
            │  Restore this?                       │
            │                                      │
            │  It restarts.                        │
            │                                      │
            └──────────────────────────────────────┘






 [red] Exit   [green] Ok
 Enter OK   Esc Exit   l Log   ? Help
)");
}

}  // namespace
}  // namespace desk::terminal
