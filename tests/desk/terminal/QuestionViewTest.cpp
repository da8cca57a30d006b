#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json question(const std::string& text, int selected) {
  return frame({{"screen", "MessageBox"},
                {"type", "yesno"},
                {"text", text},
                {"timeout", 0},
                {"rows", rows({{"yes", ""}, {"no", ""}})},
                {"selected", selected}});
}

TEST(QuestionView, QuestionHasTheCursorOnEitherAnswer) {
  EXPECT_EQ(pictureOf(question("Restore this archive?", 0)), R"(





            ┌─ [yesno] ────────────────────────────┐
            │                                      │
            │  Restore this archive?               │
            │                                      │
            │  > yes                               │
            │    no                                │
            │                                      │
            └──────────────────────────────────────┘






 Enter OK   Esc Exit   l Log   ? Help
)");
  EXPECT_EQ(pictureOf(question("Restore this archive?", 1), kTerminal, ascii()), R"(





            +- [yesno] ----------------------------+
            |                                      |
            |  Restore this archive?               |
            |                                      |
            |    yes                               |
            |  > no                                |
            |                                      |
            +--------------------------------------+






 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(QuestionView, AnswersCanBeClicked) {
  Television television(utf8());
  television.show(question("Restore?", 0), kStart);
  const Picture picture = television.picture(kTerminal, kStart);
  EXPECT_EQ((std::vector<std::string>{picture.actionAt(15, 8), picture.actionAt(15, 9),
                                      picture.actionAt(15, 10), picture.actionAt(48, 9),
                                      picture.actionAt(49, 9)}),
            (std::vector<std::string>{"", "row:0", "row:1", "row:0", ""}));
}

TEST(QuestionView, TextOfSeveralLinesStandsAboveTheAnswers) {
  EXPECT_EQ(pictureOf(question("Restore?\n\nThe receiver restarts.", 0)), R"(




            ┌─ [yesno] ────────────────────────────┐
            │                                      │
            │  Restore?                            │
            │                                      │
            │  The receiver restarts.              │
            │                                      │
            │  > yes                               │
            │    no                                │
            │                                      │
            └──────────────────────────────────────┘





 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(QuestionView, TextThatIsTooLongIsCutAndLeavesRoomForTheAnswers) {
  Json question =
      frame({{"type", "yesno"}, {"timeout", 0}, {"rows", rows({{"yes", ""}, {"no", ""}})}});
  question["text"] = manyLines(30);
  Television television(ascii());
  television.show(question, kStart);
  const Canvas canvas = television.picture(kTerminal, kStart).canvas;
  std::vector<std::string> lines;
  for (int row = 11; row < 18; ++row) lines.push_back(canvas.line(row));
  const std::string edge(12, ' ');
  EXPECT_EQ(lines, (std::vector<std::string>{
                       edge + "|  line 9                              |",
                       edge + "|  ~                                   |",
                       edge + "|                                      |",
                       edge + "|  > yes                               |",
                       edge + "|    no                                |",
                       edge + "|                                      |",
                       edge + "+--------------------------------------+",
                   }));
}

TEST(QuestionView, FirstAndLastAreItsAnswers) {
  Television television(utf8());
  television.show(question("Restore?", 0), kStart);
  television.picture(kTerminal, kStart);
  EXPECT_EQ(television.take(action::kLast), "row:1");
  EXPECT_EQ(television.take(action::kFirst), "row:0");
  EXPECT_EQ(television.take("down"), "down");
}

}  // namespace
}  // namespace desk::terminal
