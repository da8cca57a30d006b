#include <stdexcept>

#include "desk/model/Session.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

const host::MessageBox kQuestion{.text = "Sure?"};
const host::MessageBox kInformation{.text = "Done", .type = host::MessageBox::TYPE_INFO};

TEST_F(SessionTest, EmptyAtFirst) {
  EXPECT_EQ(session.top(), nullptr);
  EXPECT_FALSE(session.topHasClosed());
}

TEST_F(SessionTest, LastOpenedIsOnTopAndGoesFirst) {
  session.openWithCallback(note("first"), kQuestion);
  session.openWithCallback(note("second"), host::ChoiceBox{});
  EXPECT_EQ(top(), "ChoiceBox");
  press({"exit"});
  EXPECT_EQ(top(), "MessageBox");
  press({"ok"});
  EXPECT_EQ(notes.lines, (Lines{"second: None", "first: True"}));
}

TEST_F(SessionTest, TitleIsSetThroughTheOpenedDialog) {
  const auto dialog = session.open(kQuestion);
  EXPECT_EQ(session.top()->shown_title, "");
  dialog->setTitle("Title");
  EXPECT_EQ(session.top()->shown_title, "Title");
}

TEST_F(SessionTest, LettingGoOfTheOpenedDialogLeavesItOpen) {
  session.open(kQuestion).reset();
  EXPECT_EQ(top(), "MessageBox");
}

TEST_F(SessionTest, DialogWithoutCallbackJustGoes) {
  session.open(kQuestion);
  press({"ok"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{});
}

TEST_F(SessionTest, ClosedDialogStaysUntilTheEventIsHandledAndKeepsItsFirstResult) {
  session.openWithCallback(note("answer"), kQuestion);
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
  session.openWithCallback(
      {nullptr, "look", [this](const host::Value&) { notes.lines.push_back("on top: " + top()); }},
      host::ChoiceBox{});
  press({"exit"});
  EXPECT_EQ(notes.lines, Lines{"on top: MessageBox"});
}

TEST_F(SessionTest, CallbackMayOpenFurtherDialogs) {
  const host::Answer open_two{nullptr, "open", [this](const host::Value&) {
                                session.openWithCallback(note("lower"), kQuestion);
                                session.openWithCallback(note("upper"), host::ChoiceBox{});
                              }};
  session.openWithCallback(open_two, kInformation);
  press({"ok"});
  EXPECT_EQ(top(), "ChoiceBox");
  press({"exit", "exit"});
  EXPECT_EQ(notes.lines, (Lines{"upper: None", "lower: False"}));
}

TEST_F(SessionTest, CallbackMayOpenItsLikeOverAndOver) {
  int rounds = 0;
  host::Answer again{nullptr, "again", {}};
  again.call = [&](const host::Value&) {
    if (++rounds < 100) session.openWithCallback(again, kInformation);
  };
  session.openWithCallback(again, kInformation);
  for (int pressed = 0; pressed < 100; ++pressed) press({"ok"});
  EXPECT_EQ(rounds, 100);
  EXPECT_EQ(top(), "");
}

TEST_F(SessionTest, CallbackThatClosesTheOneBeneathTakesItAway) {
  session.openWithCallback(note("beneath"), kInformation);
  Layer& beneath = *session.top();
  session.openWithCallback(
      {nullptr, "close", [&](const host::Value&) { beneath.close("by the callback"); }}, kQuestion);
  press({"ok"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{"beneath: by the callback"});
}

TEST_F(SessionTest, OneThatClosesUnderAnotherGoesWhenItIsOnTop) {
  session.openWithCallback(note("beneath"), kInformation);
  Layer& beneath = *session.top();
  session.openWithCallback(note("above"), kQuestion);
  beneath.close({});
  settle();
  EXPECT_EQ(notes.lines, Lines{});
  press({"exit"});
  EXPECT_EQ(notes.lines, (Lines{"above: False", "beneath: None"}));
}

TEST_F(SessionTest, WhatACallbackRaisesPassesThroughAndTheDialogIsGone) {
  session.open(kInformation);
  session.openWithCallback(
      {nullptr, "raise", [](const host::Value&) { throw std::runtime_error("by the callback"); }},
      kQuestion);
  EXPECT_THROW(press({"ok"}), std::runtime_error);
  EXPECT_EQ(top(), "MessageBox");
  EXPECT_FALSE(session.topHasClosed());
}

}  // namespace
}  // namespace desk
