#include <stdexcept>

#include "desk/model/Receiver.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/TestScreen.h"

namespace desk {
namespace {

using host::operator""_t;

/// The "__init__" of the applications' menu: that of its base class, which the test gives it.
host::Object construct(const host::Call& call) {
  call.self["session"_t] = call.arguments[0];
  return call.module["Screen"_t]["__init__"_t]({call.self});
}

constexpr host::Operation kOperations[] = {{"__init__", &construct, {{"session"}}}};
constexpr host::Class kMenu = {"Menu", "Screen"_t, kOperations, ""};
constexpr host::Class kMenuWithSkin = {"Menu", "Screen"_t, kOperations, "", "<screen/>"};

struct ReceiverTest : testing::Test {
  /// Returns an application whose menu `setup` sets up.
  Application application(const SetUpScreen& setup, const host::Class& menu = kMenu) {
    const auto load = [this, setup, &menu](const host::Module& its_module) {
      module = &its_module;
      its_module.define(menu);
      its_module["Screen"_t]["__init__"_t] = plain::function([this, setup](host::Arguments given) {
        screen = plain::argument(given, 0);
        return setup(screen), host::Object();
      });
    };
    return {.load = load, .main_menu = "Menu"};
  }

  /// Returns one whose menu has three rows and these handlers.
  Application menuWith(const Handlers& handlers) {
    return application([this, handlers](const host::Object& made) {
      made["title"_t] = "Title \xff"_t;
      made.setItem("key_red"_t, type("StaticText"_t)({"Exit"_t}));
      made.setItem("filelist"_t, type("MenuList"_t)({host::list({"one"_t, "two"_t, "\xff"_t})}));
      addMap(made, "actions", "SetupActions", handlers);
    });
  }

  void open(const Handlers& handlers) { receiver.open(menuWith(handlers)); }

  host::Object type(host::Text name) const { return (*module)[name]; }

  /// Opens a dialog as the module does.
  void openDialog(host::Arguments arguments) const { screen["session"_t].get("open"_t)(arguments); }
  void openWithCallback(host::Arguments arguments) const {
    screen["session"_t].get("openWithCallback"_t)(arguments);
  }

  void finishJobs() {
    while (!receiver.jobs().idle()) {
      std::vector<pollfd> watched = receiver.jobs().watched();
      ASSERT_GT(poll(watched.data(), watched.size(), 60000), 0);
      receiver.reportJobs();
    }
  }

  bool handle(const std::string& text) { return receiver.handle(word(text)); }

  LayerView top() const { return receiver.frame({}).layers.back(); }
  std::string topName() const { return receiver.frame({}).top() ? top().screen : ""; }

  /// Returns what a viewer sees after a word, as JSON.
  std::string frame(const std::string& text) const { return jsonOf(receiver.frame(word(text))); }

  Notes notes;
  Receiver receiver{notes};
  const host::Module* module = nullptr;
  host::Object screen;  ///< the menu that was made last
};

constexpr const char* kRaised = "error: OSError: [Errno 5] Input/output error: '/media/hdd'";

void raise() {
  throw plain::Error("OSError", "[Errno 5] Input/output error: '/media/hdd'", 5);
}

TEST_F(ReceiverTest, FrameShowsAllThatAViewerSees) {
  open({});
  EXPECT_EQ(frame("down"),
            R"({"key":"down","screen":"Menu","title":"Title \\xff","widgets":{"key_red":"Exit"},)"
            R"("rows":[["one",""],["two",""],["\\xff",""]],"selected":0,"list":"filelist"})");
}

TEST_F(ReceiverTest, FrameOfAQuestionAddsItsKind) {
  open({{"ok", [this] { openDialog({type("MessageBox"_t), "Sure?"_t}); }}});
  EXPECT_TRUE(handle("ok"));
  EXPECT_EQ(frame("ok"), R"({"key":"ok","screen":"MessageBox","title":"","widgets":{},)"
                         R"("rows":[["yes",""],["no",""]],"selected":0,)"
                         R"("type":"yesno","text":"Sure?","timeout":0})");
}

TEST_F(ReceiverTest, FrameOfAListWithPicturesHoldsThePathOfEach) {
  receiver.open(application([this](const host::Object& made) {
    const host::Object with =
        host::tuple({"a"_t, "A"_t, ""_t, "/pictures/\xff.png"_t, host::Object()});
    const host::Object without = host::tuple({"b"_t, "B"_t, ""_t, host::Object(), host::Object()});
    made.setItem("menu"_t, type("List"_t)({host::list({with, without})}));
  }));
  EXPECT_EQ(frame(""),
            R"({"key":"","screen":"Menu","title":"","widgets":{},"rows":[["A",""],["B",""]],)"
            R"("selected":0,"pictures":["/pictures/\\xff.png",""],"list":"menu"})");
}

TEST_F(ReceiverTest, FrameOfAScreenWithALayoutOfItsOwnHoldsIt) {
  receiver.open(application([](const host::Object&) {}, kMenuWithSkin));
  EXPECT_EQ(frame(""), R"({"key":"","screen":"Menu","title":"","widgets":{},)"
                       R"("rows":[],"selected":0,"skin":"<screen/>"})");
}

TEST_F(ReceiverTest, RowsAreTheSameUntilTheyAreSetAnew) {
  open({{"ok", [&] { screen.item("filelist"_t)["l"_t]["setList"_t]({host::list({"three"_t})}); }}});
  const SharedRows shown = top().rows;
  handle("down");
  EXPECT_EQ(top().rows, shown);
  handle("ok");
  EXPECT_EQ(*top().rows, (Rows{{.text = "three"}}));
}

TEST_F(ReceiverTest, FrameHoldsTheScreensBeneathADialogAndEachLayerItsOwnNumber) {
  open({{"ok", [this] { openDialog({type("MessageBox"_t), "Sure?"_t}); }}});
  const auto layers = [this] {
    Lines names;
    for (const LayerView& layer : receiver.frame({}).layers) {
      names.push_back(std::to_string(layer.id) + " " + layer.screen);
    }
    return names;
  };
  EXPECT_EQ(layers(), Lines{"1 Menu"});
  handle("ok");
  EXPECT_EQ(layers(), (Lines{"1 Menu", "2 MessageBox"}));
  handle("exit");
  handle("ok");
  EXPECT_EQ(layers(), (Lines{"1 Menu", "3 MessageBox"}));
}

TEST_F(ReceiverTest, FrameWithoutAScreenIsEmpty) {
  open({{"cancel", [this] { screen["close"_t]({true}); }}});
  EXPECT_TRUE(handle("exit"));
  for (const char* word : {"ok", "exit", "timeout", "frame"}) {
    EXPECT_TRUE(handle(word));
    EXPECT_EQ(frame(""), R"({"key":"","screen":"","title":"","widgets":{},)"
                         R"("rows":[],"selected":0})");
  }
  EXPECT_FALSE(handle("select:one"));
  EXPECT_FALSE(handle("row:0"));
  EXPECT_EQ(notes.lines, Lines{});
}

TEST_F(ReceiverTest, SelectMovesTheCursorToTheFirstRowThatContainsTheText) {
  open({});
  const std::pair<const char*, int> found[] = {
      {"select:two", 1}, {"select:o", 0}, {"select:w", 1}, {"select:\\xff", 2}};
  for (const auto& [word, row] : found) {
    EXPECT_TRUE(handle(word)) << word;
    EXPECT_EQ(top().selected, static_cast<std::size_t>(row)) << word;
  }
  EXPECT_FALSE(handle("select:three"));
  EXPECT_FALSE(handle("select:TWO"));
  EXPECT_EQ(top().selected, 2U);
}

TEST_F(ReceiverTest, RowMovesTheCursorToTheRowOfThatIndex) {
  open({});
  for (const int row : {2, 0, 1}) {
    EXPECT_TRUE(handle("row:" + std::to_string(row)));
    EXPECT_EQ(top().selected, static_cast<std::size_t>(row));
  }
  for (const char* word : {"row:3", "row:999999999"}) EXPECT_FALSE(handle(word)) << word;
  EXPECT_EQ(top().selected, 1U);
}

TEST_F(ReceiverTest, SelectFindsNothingWhereThereIsNoList) {
  open({{"ok", [this] { openDialog({type("Console"_t), {"cmdlist"_t, host::list()}}); }}});
  handle("ok");
  EXPECT_FALSE(handle("select:one"));
}

TEST_F(ReceiverTest, ErrorInAKeyHandlerIsToldAndTheScreenStays) {
  open({{"ok", raise}});
  EXPECT_TRUE(handle("ok"));
  EXPECT_EQ(notes.lines, Lines{kRaised});
  EXPECT_TRUE(handle("down"));
  EXPECT_EQ(top().selected, 1U);
}

TEST_F(ReceiverTest, ErrorInADialogsCallbackIsToldAndTheScreenBeneathStays) {
  open({{"ok", [this] { openWithCallback({action(raise), type("MessageBox"_t), "Sure?"_t}); }}});
  handle("ok");
  handle("exit");
  EXPECT_EQ(notes.lines, Lines{kRaised});
  EXPECT_EQ(topName(), "Menu");
}

TEST_F(ReceiverTest, ErrorAfterTheScreenHasClosedStillTakesItAway) {
  open({{"cancel", [this] {
           screen["close"_t]();
           raise();
         }}});
  handle("exit");
  EXPECT_EQ(notes.lines, Lines{kRaised});
  EXPECT_EQ(topName(), "");
}

TEST_F(ReceiverTest, ErrorAtLoadOrInTheMenuIsToldAndNothingIsShown) {
  receiver.open({.load = [](const host::Module&) { raise(); }, .main_menu = "Menu"});
  Receiver other(notes);
  other.open(application([](const host::Object&) { raise(); }));
  EXPECT_EQ(notes.lines, (Lines{kRaised, kRaised}));
  EXPECT_EQ(topName(), "");
  EXPECT_EQ(other.frame({}), Frame());
}

TEST_F(ReceiverTest, TimeOutPassesForTheBoxOnTop) {
  open({{"ok", [this] {
           const host::Object box = type("MessageBox"_t);
           openWithCallback(
               {screen["close"_t], box, "Done"_t, box["TYPE_INFO"_t], {"timeout"_t, 10}});
         }}});
  handle("timeout");
  EXPECT_EQ(topName(), "Menu");
  handle("ok");
  EXPECT_EQ(topName(), "MessageBox");
  handle("timeout");
  EXPECT_EQ(topName(), "");
}

TEST_F(ReceiverTest, ConsoleRunsBetweenWordsAndItsCallbackClosesTheScreen) {
  open({{"ok", [this] {
           openWithCallback({screen["close"_t],
                             type("Console"_t),
                             {"title"_t, "Running"_t},
                             {"cmdlist"_t, host::list({"echo out"_t, "echo more"_t})}});
         }}});
  handle("ok");
  finishJobs();
  EXPECT_EQ(top().as<ConsoleContent>()->output, "out\nmore\n");
  handle("ok");
  EXPECT_EQ(topName(), "");
}

TEST_F(ReceiverTest, ErrorInAJobsCallbackIsTold) {
  open({});
  receiver.jobs().start({"true"}, {}, [](int) { raise(); });
  finishJobs();
  EXPECT_EQ(notes.lines, Lines{kRaised});
  EXPECT_EQ(topName(), "Menu");
}

TEST_F(ReceiverTest, CommandsAndLinesOfTheModuleAreTold) {
  open({});
  testing::internal::CaptureStdout();
  type("print"_t)({"[module] line"_t});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "[module] line\n");
  EXPECT_EQ(type("system"_t)({"exit 2"_t}), host::Object(512));
  EXPECT_EQ(plain::textsOf(type("popen"_t)({"echo out"_t})["readlines"_t]()), Lines{"out\n"});
  EXPECT_EQ(notes.lines, (Lines{"log: [module] line", "command: exit 2", "command: echo out"}));
}

TEST_F(ReceiverTest, GoesAwayWithDialogsOpenAndJobsRunning) {
  const Gate gate;
  {
    Receiver other(notes);
    other.open(menuWith({}));
    openDialog({type("Console"_t), {"title"_t, ""_t}, {"cmdlist"_t, host::list({gate.wait()})}});
    openDialog({type("MessageBox"_t), "Sure?"_t});
  }
  EXPECT_EQ(notes.lines, Lines{"command: " + gate.wait()});
}

}  // namespace
}  // namespace desk
