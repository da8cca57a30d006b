#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

LayerView choice(const SharedRows& rows, std::size_t selected = 0,
                 const std::string& question = "Which one?") {
  return {.screen = "ChoiceBox",
          .rows = rows,
          .selected = selected,
          .content = ChoiceContent{question}};
}

TEST(ChoiceView, ManyRowsAreScrolledWithinTheDialog) {
  EXPECT_EQ(pictureOf(choice(manyRows(30), 29)), R"(
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

TEST(ChoiceView, SaysWhereTheCursorIsIfThereIsAnythingToChoose) {
  EXPECT_EQ(boxOf(choice(rows({}), 0, "Nothing to choose.")),
            (Lines{"12,6 40x5 ChoiceBox, nothing here", "2   Nothing to choose."}));
  LayerView archives = choice(rows({{"first"}}));
  archives.title = "Archives";
  EXPECT_EQ(boxOf(archives), (Lines{"12,5 40x7 Archives, 1/1", "2   Which one?", "4   > first"}));
}

TEST(ChoiceView, WidestRowDecidesTheWidth) {
  EXPECT_EQ(boxOf(choice(rows({{"settings of the living room, yesterday"}, {"\u65e5\u672c"}}), 1)),
            (Lines{"9,5 46x8 ChoiceBox, 2/2", "2   Which one?",
                   "4     settings of the living room, yesterday", "5   > \u65e5\u672c"}));
}

TEST(ChoiceView, QuestionIsWrappedAndARowWiderThanTheTerminalCut) {
  const std::string words = "many words that do not fit into one line of the dialog, not at all";
  EXPECT_EQ(boxOf(choice(rows({{words}}), 0, words)),
            (Lines{"0,5 64x8 ChoiceBox, 1/1",
                   "2   many words that do not fit into one line of the dialog,", "3   not at all",
                   "5   > many words that do not fit into one line of the dialog,…"}));
}

}  // namespace
}  // namespace desk::terminal
