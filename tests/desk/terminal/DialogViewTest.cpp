#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json message(const Json& more) {
  Json result = frame({{"screen", "MessageBox"}, {"type", "info"}, {"text", ""}, {"timeout", 0}});
  result.update(more);
  return result;
}

Json question(const std::string& text, int selected) {
  return message({{"type", "yesno"},
                  {"text", text},
                  {"rows", rows({{"yes", ""}, {"no", ""}})},
                  {"selected", selected}});
}

TEST(DialogView, MessageStandsInTheMiddle) {
  EXPECT_EQ(boxOf(message({{"text", "The backup is done."}})),
            (Lines{"12,6 40x5 [info]", "2   The backup is done."}));
}

TEST(DialogView, TypeIsNamedAfterTheTitleAndErrorsHaveTheirInk) {
  const struct {
    const char* title;
    const char* type;
    const char* edge;
  } messages[] = {
      {"", "info", "            ┌─ [info] ─────────────────────────────┐"},
      {"", "error", "            ┌─ [error] ────────────────────────────┐"},
      {"Note", "yesno", "            ┌─ Note [yesno] ───────────────────────┐"},
  };
  for (const auto& [title, type, edge] : messages) {
    const Canvas canvas = canvasOf(message({{"type", type}, {"title", title}}));
    EXPECT_EQ(canvas.line(7), edge);
    EXPECT_EQ(inInk(canvas, 7, Ink::error), std::string(type) == "error" ? edge : "") << type;
  }
}

TEST(DialogView, SecondsLeftAreCountedDownInThePicture) {
  Television television(utf8());
  television.show(message({{"text", "Done."}, {"timeout", 10}}), kStart);
  const struct {
    int passed;
    const char* note;
  } times[] = {{0, "closes in 10 s"}, {1, "closes in 9 s"}, {10, "closes in 0 s"}};
  for (const auto& [passed, note] : times) {
    const Time now = kStart + std::chrono::seconds(passed);
    const Canvas canvas = television.picture(kTerminal, now).canvas;
    const std::string edge = inInk(canvas, 10, Ink::notice);
    EXPECT_EQ(edge.substr(edge.find_first_not_of(' ')), note);
    EXPECT_EQ(television.secondsLeft(now), 10 - passed);
  }
}

TEST(DialogView, LongTitleWidensIt) {
  EXPECT_EQ(boxOf(message({{"title", "What was found on the hard disk today"}})),
            Lines{"7,7 50x4 What was found on the hard disk today [info]"});
}

TEST(DialogView, LinesAndEmptyLinesOfAMessageStay) {
  EXPECT_EQ(boxOf(message({{"text", "One\n\n  two\n"}})),
            (Lines{"12,5 40x7 [info]", "2   One", "4     two"}));
}

TEST(DialogView, LongLinesAreWrapped) {
  EXPECT_EQ(boxOf(message({{"text",
                            "The archive of this receiver could not be written, for there is no "
                            "room left on the device \u65e5\u672c."}})),
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
  television.show(question("Restore?", 0), kStart);
  EXPECT_EQ(clicks(television.picture(kTerminal, kStart)),
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

}  // namespace
}  // namespace desk::terminal
