#include <stdexcept>

#include "desk/model/Host.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/TestScreen.h"

namespace desk {
namespace {

using host::operator""_t;

const MessageBox kQuestion{.text = "Sure?"};
const MessageBox kInformation{.text = "Done", .type = MessageContent::Type::info};

TEST_F(SessionTest, EmptyAtFirst) {
  EXPECT_EQ(session.top(), nullptr);
  EXPECT_FALSE(session.topHasClosed());
}

TEST_F(SessionTest, LastOpenedIsOnTopAndGoesFirst) {
  session.open(kQuestion, note("first"));
  session.open(ChoiceBox{}, note("second"));
  EXPECT_EQ(top(), "ChoiceBox");
  press({"exit"});
  EXPECT_EQ(top(), "MessageBox");
  press({"ok"});
  EXPECT_EQ(notes.lines, (Lines{"second: None", "first: True"}));
}

TEST_F(SessionTest, DialogsAreOpenedAsTheModuleAsksForThem) {
  const Host host(jobs, notes);
  const host::Object open = session.object().get("open"_t);
  const host::Object box = host.named("MessageBox");
  const host::Object texts = host::list({"one"_t, "two"_t});
  using Type = MessageContent::Type;
  open({box, "a"_t});
  EXPECT_EQ(shown<MessageContent>(), (MessageContent{.type = Type::yesno, .text = "a"}));
  open({box, "b"_t, box["TYPE_INFO"_t], {"timeout"_t, 10}});
  EXPECT_EQ(shown<MessageContent>(),
            (MessageContent{.type = Type::info, .text = "b", .timeout = 10}));
  open({box, "c"_t, box["TYPE_ERROR"_t], {"timeout"_t, 5}});
  EXPECT_EQ(shown<MessageContent>(),
            (MessageContent{.type = Type::error, .text = "c", .timeout = 5}));
  open({host.named("ChoiceBox"), {"title"_t, "d"_t}, {"list"_t, host::list({texts})}});
  EXPECT_EQ(shown<ChoiceContent>(), ChoiceContent{"d"});
  EXPECT_EQ(rowsOf(*session.top()), Lines{"one"});
  open({host.named("Console"), {"title"_t, "e"_t}, {"cmdlist"_t, host::list({"exit 1"_t})}});
  EXPECT_EQ(session.top()->title(), "e");
  EXPECT_EQ(shown<ConsoleContent>(), ConsoleContent{.is_running = true});
  runToEnd(jobs);
  open({host.named("Ipkg"), {"cmdList"_t, host::list()}});
  EXPECT_EQ(shown<PackagesContent>(), PackagesContent());
  EXPECT_EQ(notes.lines, Lines{"command: exit 1"});
}

TEST_F(SessionTest, TitleIsSetThroughTheOpenedDialog) {
  const Host host(jobs, notes);
  const host::Object box = host.named("MessageBox");
  const host::Object dialog = session.object().call("open"_t, {box, "Sure?"_t});
  EXPECT_EQ(session.top()->title(), "");
  dialog["setTitle"_t]({"Title"_t});
  EXPECT_EQ(session.top()->title(), "Title");
}

TEST_F(SessionTest, DialogWithoutCallbackJustGoes) {
  session.open(kQuestion);
  press({"ok"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{});
}

TEST_F(SessionTest, ClosedDialogStaysUntilTheEventIsHandledAndKeepsItsFirstResult) {
  session.open(kQuestion, note("answer"));
  session.top()->handleKey("ok");
  session.top()->handleKey("exit");
  EXPECT_EQ(top(), "MessageBox");
  EXPECT_TRUE(session.topHasClosed());
  EXPECT_EQ(notes.lines, Lines{});
  settle();
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{"answer: True"});
}

TEST_F(SessionTest, DialogIsGoneWhenItsCallbackRuns) {
  session.open(kInformation);
  session.open(ChoiceBox{}, action([this] { notes.lines.push_back("on top: " + top()); }));
  press({"exit"});
  EXPECT_EQ(notes.lines, Lines{"on top: MessageBox"});
}

TEST_F(SessionTest, CallbackMayOpenFurtherDialogs) {
  session.open(kInformation, action([this] {
                 session.open(kQuestion, note("lower"));
                 session.open(ChoiceBox{}, note("upper"));
               }));
  press({"ok"});
  EXPECT_EQ(top(), "ChoiceBox");
  press({"exit", "exit"});
  EXPECT_EQ(notes.lines, (Lines{"upper: None", "lower: False"}));
}

TEST_F(SessionTest, CallbackMayOpenItsLikeOverAndOver) {
  int rounds = 0;
  const std::function<void()> again = [&] {
    if (++rounds < 100) session.open(kInformation, action(again));
  };
  session.open(kInformation, action(again));
  for (int pressed = 0; pressed < 100; ++pressed) press({"ok"});
  EXPECT_EQ(rounds, 100);
  EXPECT_EQ(top(), "");
}

TEST_F(SessionTest, CallbackThatClosesTheOneBeneathTakesItAway) {
  session.open(kInformation, note("beneath"));
  Layer& beneath = *session.top();
  session.open(kQuestion, action([&] { beneath.close("by the callback"_t); }));
  press({"ok"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{"beneath: by the callback"});
}

TEST_F(SessionTest, OneThatClosesUnderAnotherGoesWhenItIsOnTop) {
  session.open(kInformation, note("beneath"));
  Layer& beneath = *session.top();
  session.open(kQuestion, note("above"));
  beneath.close({});
  settle();
  EXPECT_EQ(notes.lines, Lines{});
  press({"exit"});
  EXPECT_EQ(notes.lines, (Lines{"above: False", "beneath: None"}));
}

TEST_F(SessionTest, WhatACallbackRaisesPassesThroughAndTheDialogIsGone) {
  session.open(kInformation);
  session.open(kQuestion, action([] { throw std::runtime_error("by the callback"); }));
  EXPECT_THROW(press({"ok"}), std::runtime_error);
  EXPECT_EQ(top(), "MessageBox");
  EXPECT_FALSE(session.topHasClosed());
}

}  // namespace
}  // namespace desk
