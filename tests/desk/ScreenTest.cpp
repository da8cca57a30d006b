#include <stdexcept>

#include "desk/model/Host.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/TestScreen.h"

namespace desk {
namespace {

using host::operator""_t;

struct Screens : SessionTest {
  void open(const SetUpScreen& setup) { session.open(testScreen(setup), note("closed")); }

  /// Makes a widget of the framework.
  host::Object widget(const char* type, const host::Object& content) const {
    return host.named(type)({content});
  }

  /// Returns a handler that takes note of `line`.
  std::function<void()> noting(const std::string& line) {
    return [this, line] { notes.lines.push_back(line); };
  }

  Host host{jobs, notes};
};

TEST_F(Screens, ShowTheirTextWidgetsByName) {
  open([this](const host::Object& screen) {
    screen.setItem("key_red"_t, widget("StaticText", "Exit"_t));
    screen.setItem("status"_t, widget("Label", "odd \xff"_t));
    screen.setItem("console"_t, {});
  });
  EXPECT_EQ(top(), "TestScreen");
  EXPECT_EQ(shown<ScreenContent>(),
            (ScreenContent{.texts = {{"key_red", "Exit"}, {"status", "odd \\xff"}}}));
}

TEST_F(Screens, ItemSetAgainTakesThePlaceOfTheFormer) {
  open([this](const host::Object& screen) {
    screen.setItem("key_green"_t, widget("StaticText", "Install"_t));
    screen.setItem("key_green"_t, widget("StaticText", "Start"_t));
  });
  EXPECT_EQ(shown<ScreenContent>(), (ScreenContent{.texts = {{"key_green", "Start"}}}));
}

TEST_F(Screens, TitleAttributeIsTheTitleShown) {
  open([](const host::Object&) {});
  EXPECT_EQ(session.top()->title(), "");
  open([](const host::Object& screen) { screen["title"_t] = "Title"_t; });
  EXPECT_EQ(session.top()->title(), "Title");
}

TEST_F(Screens, LayoutHooksRunOnceInOrderWhenTheScreenIsMade) {
  open([this](const host::Object& screen) {
    screen["onLayoutFinish"_t]["append"_t]({action(noting("first hook"))});
    screen["onLayoutFinish"_t]["append"_t]({action(noting("second hook"))});
    notes.lines.push_back("constructed");
  });
  EXPECT_EQ(notes.lines, (Lines{"constructed", "first hook", "second hook"}));
}

TEST_F(Screens, DialogOpenedByALayoutHookLiesOnTop) {
  open([this](const host::Object& screen) {
    screen["onLayoutFinish"_t]["append"_t](
        {action([this] { session.open(MessageBox{.text = "Hello"}); })});
  });
  EXPECT_EQ(top(), "MessageBox");
}

TEST_F(Screens, KeysCallWhatTheMapsBindToThem) {
  open([this](const host::Object& screen) {
    addMap(screen, "actions", "OkCancelActions",
           {{"ok", noting("ok")}, {"cancel", noting("cancel")}});
    addMap(screen, "colors", "ColorActions", {{"red", noting("red")}});
  });
  press({"ok", "exit", "red", "green", "up", "7"});
  EXPECT_EQ(notes.lines, (Lines{"ok", "cancel", "red"}));
}

TEST_F(Screens, MapOfTheLowerPriorityNumberIsAskedFirst) {
  open([this](const host::Object& screen) {
    addMap(screen, "a", "SetupActions",
           {{"ok", noting("ok at 0")}, {"cancel", noting("cancel at 0")}});
    addMap(screen, "b", "OkCancelActions", {{"ok", noting("ok at -1")}}, -1);
    addMap(screen, "c", "OkCancelActions", {{"ok", noting("ok at 1")}}, 1);
  });
  press({"ok", "exit"});
  EXPECT_EQ(notes.lines, (Lines{"ok at -1", "cancel at 0"}));
}

TEST_F(Screens, KeysThatNoMapBindsMoveTheListsCursor) {
  open([this](const host::Object& screen) {
    screen.setItem("filelist"_t, widget("MenuList", plain::listOf({"a", "b", "c"})));
    addMap(screen, "actions", "SetupActions", {{"ok", [] {}}});
  });
  press({"down", "down", "up"});
  EXPECT_EQ(session.top()->rowList()->selected(), 1);
}

TEST_F(Screens, ListHandsOutTheTupleAndShowsItsSecondAndThirdItem) {
  const host::Object first = host::tuple({"key"_t, "Title"_t, "Description \xff"_t});
  const host::Object second = host::tuple({"other"_t, "Other"_t, ""_t});
  const host::Object list = widget("List", host::list({first, second}));
  open([&](const host::Object& screen) { screen.setItem("menu"_t, list); });
  const std::vector<Row>& rows = session.top()->rowList()->rows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].text, "Title");
  EXPECT_EQ(rows[0].description, "Description \\xff");
  EXPECT_EQ(list["getCurrent"_t](), first);
  press({"down"});
  EXPECT_EQ(list["getCurrent"_t](), second);
  list["setList"_t]({host::list()});
  EXPECT_TRUE(list["getCurrent"_t]().isNone());
}

TEST_F(Screens, MenuListHandsOutTheNameAsItWasGiven) {
  const host::Object list = widget("MenuList", plain::listOf({"first", "odd \xff"}));
  open([&](const host::Object& screen) { screen.setItem("filelist"_t, list); });
  EXPECT_EQ(rowsOf(*session.top()), (Lines{"first", "odd \\xff"}));
  press({"down"});
  EXPECT_EQ(list["getCurrent"_t](), "odd \xff"_t);
  list["l"_t]["setList"_t]({host::list()});
  EXPECT_TRUE(list["getCurrent"_t]().isNone());
}

TEST_F(Screens, CloseWithTheirResultWhenTheKeyHasBeenHandled) {
  open([this](const host::Object& screen) {
    addMap(screen, "actions", "SetupActions", {{"cancel", [this, screen] {
                                                  screen["close"_t]({true});
                                                  screen["close"_t]({false});
                                                  notes.lines.push_back("still here");
                                                }}});
  });
  press({"exit"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, (Lines{"still here", "closed: True"}));
}

TEST_F(Screens, ThatFailToOpenLeaveNothingBehind) {
  const auto raise = [] { throw std::runtime_error("in the screen"); };
  EXPECT_THROW(open([&](const host::Object&) { raise(); }), std::runtime_error);
  EXPECT_THROW(open([&](const host::Object& screen) {
                 screen["onLayoutFinish"_t]["append"_t]({action(raise)});
               }),
               std::runtime_error);
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{});
}

}  // namespace
}  // namespace desk
