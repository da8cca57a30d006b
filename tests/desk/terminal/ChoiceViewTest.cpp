#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json choice(const Json& more) {
  Json result = frame({{"screen", "ChoiceBox"}, {"text", "Which one?"}});
  result.update(more);
  return result;
}

TEST(ChoiceView, NothingToChoose) {
  EXPECT_EQ(pictureOf(choice({{"text", "Nothing to choose."}})), R"(






            ┌─ ChoiceBox ──────────────────────────┐
            │                                      │
            │  Nothing to choose.                  │
            │                                      │
            └─────────────────────── nothing here ─┘








 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ChoiceView, OneRow) {
  EXPECT_EQ(pictureOf(choice({{"title", "Archives"}, {"rows", rows({{"first", ""}})}})),
            R"(





            ┌─ Archives ───────────────────────────┐
            │                                      │
            │  Which one?                          │
            │                                      │
            │  > first                             │
            │                                      │
            └──────────────────────────────── 1/1 ─┘







 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ChoiceView, ManyRowsAreScrolledWithinTheDialog) {
  EXPECT_EQ(pictureOf(choice({{"rows", manyRows(30)}, {"selected", 29}})), R"(
            ┌─ ChoiceBox ──────────────────────────┐
            │                                      │
            │  Which one?                          │
            │                                      │
            │    row 18                         ░  │
            │    row 19                         ░  │
            │    row 20                         ░  │
            │    row 21                         ░  │
            │    row 22                         ░  │
            │    row 23                         ░  │
            │    row 24                         ░  │
            │    row 25                         ░  │
            │    row 26                         █  │
            │    row 27                         █  │
            │    row 28                         █  │
            │  > row 29                         █  │
            │                                      │
            └────────────────────────────── 30/30 ─┘

 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ChoiceView, WidestRowDecidesTheWidth) {
  EXPECT_EQ(
      pictureOf(choice(
          {{"rows", rows({{"settings of the living room, yesterday", ""}, {"\u65e5\u672c", ""}})},
           {"selected", 1}})),
      R"(





         ┌─ ChoiceBox ────────────────────────────────┐
         │                                            │
         │  Which one?                                │
         │                                            │
         │    settings of the living room, yesterday  │
         │  > 日本                                    │
         │                                            │
         └────────────────────────────────────── 2/2 ─┘






 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ChoiceView, QuestionIsWrappedAndARowWiderThanTheTerminalCut) {
  const std::string words = "many words that do not fit into one line of the dialog, not at all";
  EXPECT_EQ(pictureOf(choice({{"text", words}, {"rows", rows({{words, ""}})}})), R"(





┌─ ChoiceBox ──────────────────────────────────────────────────┐
│                                                              │
│  many words that do not fit into one line of the dialog,     │
│  not at all                                                  │
│                                                              │
│  > many words that do not fit into one line of the dialog,…  │
│                                                              │
└──────────────────────────────────────────────────────── 1/1 ─┘






 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(ChoiceView, RowsOfAChoiceTakePageWords) {
  Television television(utf8());
  const Json frame = choice({{"rows", manyRows(30)}, {"selected", 12}});
  television.show(frame, kStart);
  television.picture(kTerminal, kStart);
  EXPECT_EQ(television.take(action::kPageUp), "row:0");
  EXPECT_EQ(television.take(action::kPageDown), "row:24");
  EXPECT_EQ(television.take(action::kFirst), "row:0");
  EXPECT_EQ(television.take(action::kLast), "row:29");
}

}  // namespace
}  // namespace desk::terminal
