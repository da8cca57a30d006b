#include <stdexcept>

#include "desk/model/Host.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/TestScreen.h"
#include "tests/support/Raised.h"

namespace desk {
namespace {

struct Screens : SessionTest {
  void open(const TestScreen::Setup& setup) {
    session.openWithCallback(note("closed"), screenClass("TestScreen", host, setup));
  }

  /// Returns a handler that takes note of `line`.
  std::function<void()> noting(const std::string& line) {
    return [this, line] { notes.lines.push_back(line); };
  }

  Host host{jobs, notes};
};

TEST_F(Screens, ShowTheirTextWidgetsByName) {
  open([](TestScreen& screen) {
    screen.peer().setItem("key_red", screen.host().components().makeStaticText("Exit"));
    screen.peer().setItem("status", screen.host().components().makeLabel("odd \xff"));
    screen.peer().setItem("console", nullptr);
  });
  EXPECT_EQ(top(), "TestScreen");
  EXPECT_EQ(shownBy(*session.top()), R"({"widgets":{"key_red":"Exit","status":"odd \\xff"}})");
}

TEST_F(Screens, ItemSetAgainTakesThePlaceOfTheFormer) {
  open([](TestScreen& screen) {
    screen.peer().setItem("key_green", screen.host().components().makeStaticText("Install"));
    screen.peer().setItem("key_green", screen.host().components().makeStaticText("Start"));
  });
  EXPECT_EQ(shownBy(*session.top()), R"({"widgets":{"key_green":"Start"}})");
}

TEST_F(Screens, WidgetIsFoundByItsNameAndKind) {
  open([](TestScreen& screen) {
    host::ScreenPeer& peer = screen.peer();
    const auto list = screen.host().components().makeList({});
    const auto rows = screen.host().components().makeMenuList({});
    const auto label = screen.host().components().makeLabel("");
    peer.setItem("menu", list);
    peer.setItem("filelist", rows);
    peer.setItem("status", label);
    EXPECT_EQ(peer.list("menu"), list);
    EXPECT_EQ(peer.menuList("filelist"), rows);
    EXPECT_EQ(peer.label("status"), label);
    EXPECT_EQ(support::raised([&] { peer.label("nothing"); }), "0 KeyError: 'nothing'");
    EXPECT_EQ(support::raised([&] { peer.label("menu"); }),
              "0 TypeError: 'menu' is a widget of another kind");
  });
}

TEST_F(Screens, TitleAttributeIsTheTitleShown) {
  open([](TestScreen& screen) {
    screen.peer().setAttribute("title", "Title");
    screen.peer().setAttribute("skin_path", "/plugin");
  });
  EXPECT_EQ(session.top()->shown_title, "Title");
}

TEST_F(Screens, LayoutHooksRunOnceInOrderWhenTheScreenIsMade) {
  open([this](TestScreen& screen) {
    screen.peer().appendOnLayoutFinish(screen.action(noting("first hook")));
    screen.peer().appendOnLayoutFinish(screen.action(noting("second hook")));
    notes.lines.push_back("constructed");
  });
  EXPECT_EQ(notes.lines, (Lines{"constructed", "first hook", "second hook"}));
}

TEST_F(Screens, DialogOpenedByALayoutHookLiesOnTop) {
  open([](TestScreen& screen) {
    screen.peer().appendOnLayoutFinish(
        screen.action([&screen] { screen.session->open(host::MessageBox{.text = "Hello"}); }));
  });
  EXPECT_EQ(top(), "MessageBox");
}

TEST_F(Screens, KeysCallWhatTheMapsBindToThem) {
  open([this](TestScreen& screen) {
    screen.bind("actions", "OkCancelActions", {{"ok", noting("ok")}, {"cancel", noting("cancel")}});
    screen.bind("colors", "ColorActions", {{"red", noting("red")}});
  });
  press({"ok", "exit", "red", "green", "up", "7"});
  EXPECT_EQ(notes.lines, (Lines{"ok", "cancel", "red"}));
}

TEST_F(Screens, MapOfTheLowerPriorityNumberIsAskedFirst) {
  open([this](TestScreen& screen) {
    screen.bind("a", "SetupActions",
                {{"ok", noting("ok at 0")}, {"cancel", noting("cancel at 0")}});
    screen.bind("b", "OkCancelActions", {{"ok", noting("ok at -1")}}, -1);
    screen.bind("c", "OkCancelActions", {{"ok", noting("ok at 1")}}, 1);
  });
  press({"ok", "exit"});
  EXPECT_EQ(notes.lines, (Lines{"ok at -1", "cancel at 0"}));
}

TEST_F(Screens, KeysThatNoMapBindsMoveTheListsCursor) {
  open([](TestScreen& screen) {
    screen.peer().setItem("filelist", screen.host().components().makeMenuList({"a", "b", "c"}));
    screen.bind("actions", "SetupActions", {{"ok", [] {}}});
  });
  press({"down", "down", "up"});
  EXPECT_EQ(session.top()->rowList()->selected(), 1);
}

TEST_F(Screens, ListHandsOutTheTupleAndShowsItsSecondAndThirdItem) {
  std::shared_ptr<host::List> list;
  open([&](TestScreen& screen) {
    list = screen.host().components().makeList(
        {host::Value::List{"key", "Title", "Description \xff", {}, {}},
         host::Value::List{"other", "Other", "", {}, {}}});
    screen.peer().setItem("menu", list);
  });
  const std::vector<Row>& rows = session.top()->rowList()->rows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].text, "Title");
  EXPECT_EQ(rows[0].description, "Description \\xff");
  EXPECT_EQ(list->getCurrent().list()->front(), host::Value("key"));
  press({"down"});
  EXPECT_EQ(list->getCurrent().list()->front(), host::Value("other"));
  list->setList({});
  EXPECT_TRUE(list->getCurrent().isNothing());
}

TEST_F(Screens, MenuListHandsOutTheNameAsItWasGiven) {
  std::shared_ptr<host::MenuList> list;
  open([&](TestScreen& screen) {
    list = screen.host().components().makeMenuList({"first", "odd \xff"});
    screen.peer().setItem("filelist", list);
  });
  EXPECT_EQ(rowsOf(*session.top()), (Lines{"first", "odd \\xff"}));
  press({"down"});
  EXPECT_EQ(list->getCurrent(), host::Value("odd \xff"));
  list->setList({});
  EXPECT_TRUE(list->getCurrent().isNothing());
}

TEST_F(Screens, CloseWithTheirResultWhenTheKeyHasBeenHandled) {
  open([this](TestScreen& screen) {
    screen.bind("actions", "SetupActions", {{"cancel", [&] {
                                               screen.peer().close(true);
                                               screen.peer().close(false);
                                               notes.lines.push_back("still here");
                                             }}});
  });
  press({"exit"});
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, (Lines{"still here", "closed: True"}));
}

TEST_F(Screens, OperationThatNobodyDefinesRaises) {
  TestScreen* opened = nullptr;
  open([&](TestScreen& screen) { opened = &screen; });
  EXPECT_EQ(support::raised([&] { opened->peer().callOperation("setStatus", "error"); }),
            "0 AttributeError: 'TestScreen' object has no attribute 'setStatus'");
}

TEST_F(Screens, ThatFailToOpenLeaveNothingBehind) {
  const auto raise = [] { throw std::runtime_error("in the screen"); };
  EXPECT_THROW(open([&](TestScreen&) { raise(); }), std::runtime_error);
  EXPECT_THROW(
      open([&](TestScreen& screen) { screen.peer().appendOnLayoutFinish(screen.action(raise)); }),
      std::runtime_error);
  EXPECT_EQ(top(), "");
  EXPECT_EQ(notes.lines, Lines{});
}

}  // namespace
}  // namespace desk
