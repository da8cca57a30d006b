#include <nlohmann/json.hpp>
#include <stdexcept>

#include "desk/model/Receiver.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/TestScreen.h"

namespace desk {
namespace {

/// A receiver whose application is a menu with three rows and the handlers of the test.
struct ReceiverTest : testing::Test {
  void open(const TestScreen::Handlers& handlers) {
    receiver.open(
        {.load = [this](host::Host& its_host) { host = &its_host; },
         .main_menu = [this, handlers](host::Host& its_host) { return menu(its_host, handlers); }});
  }

  host::ScreenClass menu(host::Host& its_host, const TestScreen::Handlers& handlers) {
    return screenClass("Menu", its_host, [this, handlers](TestScreen& made) {
      screen = &made;
      made.peer().setAttribute("title", "Title \xff");
      made.peer().setItem("key_red", made.host().components().makeStaticText("Exit"));
      made.peer().setItem("filelist",
                          made.host().components().makeMenuList({"one", "two", "\xff"}));
      made.bind("actions", "SetupActions", handlers);
    });
  }

  std::string top() const { return receiver.frame("").at("screen"); }

  Notes notes;
  Receiver receiver{notes};
  host::Host* host = nullptr;
  TestScreen* screen = nullptr;
};

/// An object whose text form is its name.
class NamedObject : public host::Object {
 public:
  explicit NamedObject(std::string name) : name_(std::move(name)) {}
  std::string str() const override { return name_; }

 private:
  std::string name_;
};

void raise() {
  throw host::Error("OSError", "[Errno 5] Input/output error: '/media/hdd'", 5);
}

TEST_F(ReceiverTest, FrameShowsAllThatAViewerSees) {
  open({});
  EXPECT_EQ(receiver.frame("down").dump(),
            R"({"key":"down","screen":"Menu","title":"Title \\xff","widgets":{"key_red":"Exit"},)"
            R"("rows":[["one",""],["two",""],["\\xff",""]],"selected":0,"list":"filelist"})");
}

TEST_F(ReceiverTest, FrameOfAQuestionAddsItsKind) {
  open({{"ok", [this] { screen->session->open(host::MessageBox{.text = "Sure?"}); }}});
  EXPECT_TRUE(receiver.handle("ok"));
  EXPECT_EQ(receiver.frame("ok").dump(),
            R"({"key":"ok","screen":"MessageBox","title":"","widgets":{},)"
            R"("rows":[["yes",""],["no",""]],"selected":0,)"
            R"("type":"yesno","text":"Sure?","timeout":0})");
}

TEST_F(ReceiverTest, FrameOfAListWithPicturesHoldsThePathOfEach) {
  receiver.open(
      {.load = [](host::Host&) {},
       .main_menu =
           [](host::Host& its_host) {
             return screenClass("Menu", its_host, [](TestScreen& made) {
               const host::ObjectRef picture = std::make_shared<NamedObject>("/pictures/\xff.png");
               made.peer().setItem("menu", made.host().components().makeList(
                                               {host::Value::List{"a", "A", "", picture, {}},
                                                host::Value::List{"b", "B", "", {}, {}}}));
             });
           }});
  EXPECT_EQ(receiver.frame("").dump(),
            R"({"key":"","screen":"Menu","title":"","widgets":{},"rows":[["A",""],["B",""]],)"
            R"("selected":0,"pictures":["/pictures/\\xff.png",""],"list":"menu"})");
}

TEST_F(ReceiverTest, FrameOfAScreenWithALayoutOfItsOwnHoldsIt) {
  receiver.open({.load = [](host::Host&) {},
                 .main_menu =
                     [](host::Host& its_host) {
                       host::ScreenClass menu = screenClass("Menu", its_host, [](TestScreen&) {});
                       menu.skin = "<screen/>";
                       return menu;
                     }});
  EXPECT_EQ(receiver.frame("").dump(), R"({"key":"","screen":"Menu","title":"","widgets":{},)"
                                       R"("rows":[],"selected":0,"skin":"<screen/>"})");
}

TEST_F(ReceiverTest, FrameLeavesRowsOutThatAreShownAlready) {
  open({{"ok", [&] { screen->peer().menuList("filelist")->setList({"three"}); }}});
  const auto shown = receiver.rows();
  receiver.handle("down");
  EXPECT_EQ(receiver.frame("down", shown.get()).dump(),
            R"({"key":"down","screen":"Menu","title":"Title \\xff","widgets":{"key_red":"Exit"},)"
            R"("rows":null,"selected":1,"list":"filelist"})");
  receiver.handle("ok");
  EXPECT_EQ(receiver.frame("ok", shown.get())["rows"].dump(), R"([["three",""]])");
}

TEST_F(ReceiverTest, FrameWithoutAScreenIsEmpty) {
  open({{"cancel", [this] { screen->peer().close(true); }}});
  EXPECT_TRUE(receiver.handle("exit"));
  for (const char* word : {"ok", "exit", "timeout", "frame"}) {
    EXPECT_TRUE(receiver.handle(word));
    EXPECT_EQ(receiver.frame("").dump(), R"({"key":"","screen":"","title":"","widgets":{},)"
                                         R"("rows":[],"selected":0})");
  }
  EXPECT_FALSE(receiver.handle("select:one"));
  EXPECT_FALSE(receiver.handle("row:0"));
  EXPECT_EQ(notes.lines, Lines{});
}

TEST_F(ReceiverTest, SelectMovesTheCursorToTheFirstRowThatContainsTheText) {
  open({});
  const std::pair<const char*, int> found[] = {
      {"select:two", 1}, {"select:o", 0}, {"select:w", 1}, {"select:\\xff", 2}};
  for (const auto& [word, row] : found) {
    EXPECT_TRUE(receiver.handle(word)) << word;
    EXPECT_EQ(receiver.frame("")["selected"], row) << word;
  }
  EXPECT_FALSE(receiver.handle("select:three"));
  EXPECT_FALSE(receiver.handle("select:TWO"));
  EXPECT_EQ(receiver.frame("")["selected"], 2);
}

TEST_F(ReceiverTest, RowMovesTheCursorToTheRowOfThatIndex) {
  open({});
  for (const int row : {2, 0, 1}) {
    EXPECT_TRUE(receiver.handle("row:" + std::to_string(row)));
    EXPECT_EQ(receiver.frame("")["selected"], row);
  }
  for (const char* word : {"row:3", "row:999999999"}) EXPECT_FALSE(receiver.handle(word)) << word;
  EXPECT_EQ(receiver.frame("")["selected"], 1);
}

TEST_F(ReceiverTest, SelectFindsNothingWhereThereIsNoList) {
  open({{"ok", [this] { screen->session->open(host::Console{}); }}});
  receiver.handle("ok");
  EXPECT_FALSE(receiver.handle("select:one"));
}

TEST_F(ReceiverTest, ErrorInAKeyHandlerIsToldAndTheScreenStays) {
  open({{"ok", raise}});
  EXPECT_TRUE(receiver.handle("ok"));
  EXPECT_EQ(notes.lines, Lines{"error: OSError: [Errno 5] Input/output error: '/media/hdd'"});
  EXPECT_TRUE(receiver.handle("down"));
  EXPECT_EQ(receiver.frame("")["selected"], 1);
}

TEST_F(ReceiverTest, ErrorInADialogsCallbackIsToldAndTheScreenBeneathStays) {
  open({{"ok", [this] {
           screen->session->openWithCallback({screen, "raise", [](const host::Value&) { raise(); }},
                                             host::MessageBox{.text = "Sure?"});
         }}});
  receiver.handle("ok");
  receiver.handle("exit");
  EXPECT_EQ(notes.lines, Lines{"error: OSError: [Errno 5] Input/output error: '/media/hdd'"});
  EXPECT_EQ(top(), "Menu");
}

TEST_F(ReceiverTest, ErrorAfterTheScreenHasClosedStillTakesItAway) {
  open({{"cancel", [this] {
           screen->peer().close({});
           raise();
         }}});
  receiver.handle("exit");
  EXPECT_EQ(notes.lines.size(), 1U);
  EXPECT_EQ(top(), "");
}

TEST_F(ReceiverTest, ErrorAtLoadOrInTheMenuIsToldAndNothingIsShown) {
  receiver.open({.load = [](host::Host&) { raise(); }, .main_menu = {}});
  Receiver other(notes);
  other.open({.load = [](host::Host&) {},
              .main_menu =
                  [](host::Host& its_host) {
                    return screenClass("Menu", its_host, [](TestScreen&) { raise(); });
                  }});
  EXPECT_EQ(notes.lines.size(), 2U);
  EXPECT_EQ(top(), "");
  EXPECT_EQ(other.frame("").at("screen"), "");
}

TEST_F(ReceiverTest, TimeOutPassesForTheBoxOnTop) {
  open(
      {{"ok", [this] {
          screen->session->openWithCallback(
              {screen, "keyCancel", [this](const host::Value&) { screen->peer().close({}); }},
              host::MessageBox{.text = "Done", .type = host::MessageBox::TYPE_INFO, .timeout = 10});
        }}});
  receiver.handle("timeout");
  EXPECT_EQ(top(), "Menu");
  receiver.handle("ok");
  EXPECT_EQ(top(), "MessageBox");
  receiver.handle("timeout");
  EXPECT_EQ(top(), "");
}

TEST_F(ReceiverTest, ConsoleRunsBetweenWordsAndItsCallbackClosesTheScreen) {
  open({{"ok", [this] {
           screen->session->openWithCallback(
               {screen, "keyCancel", [this](const host::Value&) { screen->peer().close({}); }},
               host::Console{.title = "Running", .cmdlist = {"echo out", "echo more"}});
         }}});
  receiver.handle("ok");
  while (!receiver.jobs().idle()) {
    std::vector<pollfd> watched = receiver.jobs().watched();
    ASSERT_GT(poll(watched.data(), watched.size(), 60000), 0);
    receiver.reportJobs();
  }
  EXPECT_EQ(receiver.frame("")["text"], "out\nmore\n");
  receiver.handle("ok");
  EXPECT_EQ(top(), "");
}

TEST_F(ReceiverTest, ErrorInAJobsCallbackIsTold) {
  open({});
  receiver.jobs().start({"true"}, {}, [](int) { raise(); });
  while (!receiver.jobs().idle()) {
    std::vector<pollfd> watched = receiver.jobs().watched();
    ASSERT_GT(poll(watched.data(), watched.size(), 60000), 0);
    receiver.reportJobs();
  }
  EXPECT_EQ(notes.lines, Lines{"error: OSError: [Errno 5] Input/output error: '/media/hdd'"});
  EXPECT_EQ(top(), "Menu");
}

TEST_F(ReceiverTest, CommandsAndLinesOfTheModuleAreTold) {
  open({});
  testing::internal::CaptureStdout();
  host->print("[module] line");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "[module] line\n");
  EXPECT_EQ(host->os().system("exit 2"), 512);
  EXPECT_EQ(host->os().popen("echo out"), Lines{"out\n"});
  EXPECT_EQ(notes.lines, (Lines{"log: [module] line", "command: exit 2", "command: echo out"}));
}

TEST_F(ReceiverTest, GoesAwayWithDialogsOpenAndJobsRunning) {
  const Gate gate;
  {
    Receiver other(notes);
    other.open({.load = [](host::Host&) {},
                .main_menu = [&](host::Host& its_host) { return menu(its_host, {}); }});
    screen->session->open(host::Console{.title = "", .cmdlist = {gate.wait()}});
    screen->session->open(host::MessageBox{.text = "Sure?"});
  }
  EXPECT_EQ(notes.lines, Lines{"command: " + gate.wait()});
}

}  // namespace
}  // namespace desk
