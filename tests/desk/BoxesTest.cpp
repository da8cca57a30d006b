#include "desk/model/Boxes.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using host::operator""_t;
using Type = MessageContent::Type;

struct Boxes : SessionTest {
  void openBox(Type type, int timeout = 0) {
    session.open(MessageBox{.text = "Text", .type = type, .timeout = timeout}, note("answer"));
  }

  void openChoice(const std::vector<host::Object>& list) {
    session.open(ChoiceBox{.title = "Choose", .list = list}, note("chosen"));
  }
};

/// The keys pressed in a question and its answer.
struct Question {
  std::vector<std::string> keys;
  const char* answer;
};

const Question kQuestions[] = {
    {{"ok"}, "True"},
    {{"exit"}, "False"},
    {{"down", "ok"}, "False"},
    {{"down", "up", "ok"}, "True"},
    {{"down", "exit"}, "False"},
    {{"up", "ok"}, "True"},
    {{"right", "ok"}, "False"},
    {{"down", "left", "ok"}, "True"},
    {{"red", "1", "blue", "ok"}, "True"},
};

TEST_F(Boxes, QuestionIsAnsweredByOkAtTheCursorAndByExitWithNo) {
  for (const Question& question : kQuestions) {
    openBox(Type::yesno);
    press(question.keys);
    EXPECT_EQ(notes.lines, Lines{std::string("answer: ") + question.answer});
    EXPECT_EQ(top(), "");
    notes.lines.clear();
  }
}

TEST_F(Boxes, QuestionShowsItsAnswers) {
  openBox(Type::yesno);
  EXPECT_EQ(rowsOf(*session.top()), (Lines{"yes", "no"}));
  EXPECT_EQ(shown<MessageContent>(), (MessageContent{.type = Type::yesno, .text = "Text"}));
}

TEST_F(Boxes, InformationAndErrorAreClosedByOkAndByExitAlone) {
  for (const Type type : {Type::info, Type::error}) {
    for (const char* key : {"ok", "exit"}) {
      openBox(type, 10);
      EXPECT_EQ(session.top()->rowList(), nullptr);
      press({"up", "down", "red", "0"});
      EXPECT_EQ(top(), "MessageBox");
      press({key});
      EXPECT_EQ(top(), "");
      EXPECT_EQ(notes.lines.size(), 1U);
      notes.lines.clear();
    }
  }
}

TEST_F(Boxes, OnlyABoxWithATimeOutIsClosedByIt) {
  openBox(Type::info, 10);
  session.top()->letTimeOutPass();
  settle();
  EXPECT_EQ(top(), "");
  openBox(Type::info);
  openBox(Type::yesno);
  session.top()->letTimeOutPass();
  settle();
  EXPECT_EQ(top(), "MessageBox");
}

TEST_F(Boxes, OddBytesInATextAreShownEscaped) {
  session.open(MessageBox{.text = "name \xff"});
  EXPECT_EQ(shown<MessageContent>().text, "name \\xff");
}

const std::vector<host::Object> kMedia = {
    host::tuple({"/media/hdd"_t, "/media/hdd"_t, host::Object()}),
    host::tuple({"/media/\xff"_t, "/media/\xff"_t, host::Object()}),
};

TEST_F(Boxes, ChoiceShowsTheFirstItemsAndTheQuestion) {
  openChoice(kMedia);
  EXPECT_EQ(session.top()->title(), "");
  EXPECT_EQ(shown<ChoiceContent>(), ChoiceContent{"Choose"});
  EXPECT_EQ(rowsOf(*session.top()), (Lines{"/media/hdd", "/media/\\xff"}));
}

TEST_F(Boxes, ChoiceClosesWithTheTupleAtTheCursorAsItWasGiven) {
  openChoice(kMedia);
  press({"down", "ok"});
  openChoice(kMedia);
  press({"down", "up", "ok"});
  EXPECT_EQ(notes.lines, (Lines{"chosen: [/media/\xff, /media/\xff, None]",
                                "chosen: [/media/hdd, /media/hdd, None]"}));
}

TEST_F(Boxes, ChoiceLeftByExitGivesNothing) {
  openChoice(kMedia);
  press({"down", "exit"});
  EXPECT_EQ(notes.lines, Lines{"chosen: None"});
}

TEST_F(Boxes, ChoiceAmongNothingGivesNothing) {
  for (const char* key : {"ok", "exit"}) {
    openChoice({});
    press({"up", "down", key});
    EXPECT_EQ(top(), "");
  }
  EXPECT_EQ(notes.lines, (Lines{"chosen: None", "chosen: None"}));
}

}  // namespace
}  // namespace desk
