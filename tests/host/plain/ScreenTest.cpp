#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/plain/Screen.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorder.h"

namespace plain {
namespace {

using host::operator""_t;
using support::raised;
using Lines = std::vector<std::string>;

/// A screen that a test sets up.
struct ScreenTest : testing::Test {
  /// Returns a function that takes note of `line`.
  Object noting(const std::string& line) {
    return function([this, line](Arguments) { return lines.push_back(line), Object(); });
  }

  Lines lines;
  const OpenScreen open{make<Screen>("Menu")};
  const Object& screen = open.object();
};

TEST_F(ScreenTest, CursorStandsWhereItIsPutAndTheRowsBeyondAreNone) {
  screen.setItem("filelist"_t, make<ListWidget>(host::list({"first"_t, "second"_t})));
  const Object list = screen.item("filelist"_t);
  EXPECT_EQ(list["getCurrent"_t](), "first"_t);
  open.widget<ListWidget>("filelist").cursor = 1;
  EXPECT_EQ(list["getCurrent"_t](), "second"_t);
  list["l"_t]["setList"_t]({host::list({"only"_t})});
  EXPECT_TRUE(list["getCurrent"_t]().isNone());
}

TEST_F(ScreenTest, KeyCallsWhatTheFirstMapThatBindsItSays) {
  const auto addMap = [&](host::Text key, const std::string& line, Arguments contexts) {
    const Object actions =
        host::dictionary({{line, noting(line)}, {"red"_t, noting(line + " red")}});
    screen.setItem(key, make<ActionMap>(Arguments{host::list(contexts), actions}));
  };
  addMap("actions"_t, "ok", {"SetupActions"_t});
  addMap("colours"_t, "green", {"ColorActions"_t});
  EXPECT_TRUE(open.press("green"));
  EXPECT_TRUE(open.press("ok"));
  EXPECT_TRUE(open.press("red"));
  EXPECT_FALSE(open.press("yellow"));
  EXPECT_EQ(lines, (Lines{"green", "ok", "ok red"}));
}

TEST_F(ScreenTest, WidgetOfAnotherKindOrNoneIsAnError) {
  screen.setItem("messagetext"_t, make<TextWidget>("text"_t));
  EXPECT_EQ(open.widget<TextWidget>("messagetext").text, "text"_t);
  EXPECT_EQ(raised([&] { open.widget<ListWidget>("messagetext"); }),
            "0 TypeError: 'messagetext' is a widget of another kind");
  EXPECT_EQ(raised([&] { open.widget<TextWidget>("nothing"); }), "0 KeyError: 'nothing'");
}

/// Tells when it goes.
struct Witness : Node {
  explicit Witness(Lines& lines_) : lines(lines_) {}
  ~Witness() override { lines.push_back("gone"); }
  std::string className() const override { return "Witness"; }

  Lines& lines;
};

TEST_F(ScreenTest, GoesThoughItsAttributesAndItsWidgetsReferToIt) {
  {
    const OpenScreen other(make<Screen>("Menu"));
    other.object()["self"_t] = other.object();
    other.object()["session"_t] = make<Witness>(lines);
    other.object().setItem("label"_t, make<TextWidget>(other.object()));
  }
  EXPECT_EQ(lines, Lines{"gone"});
}

/// The "__init__" of a screen that fails when its widgets are made.
Object fail(const host::Call& call) {
  call.self.setItem("status"_t, call.arguments[0]);
  call.self.setItem("label"_t, make<TextWidget>(call.self));
  throw Error("OSError", "[Errno 5] Input/output error", 5);
}

constexpr host::Operation kFailing[] = {{"__init__", &fail, {{"status"}}}};
constexpr host::Class kFailingScreen = {"Failing", "Screen"_t, kFailing, ""};

TEST_F(ScreenTest, GoesWhenItCannotBeMade) {
  support::MemorySystem system;
  support::MemorySettings settings;
  const Host host(system, settings);
  host.module().define(kFailingScreen);
  EXPECT_EQ(raised([&] { host.named("Failing")({make<Witness>(lines)}); }),
            "5 OSError: [Errno 5] Input/output error");
  EXPECT_EQ(lines, Lines{"gone"});
}

}  // namespace
}  // namespace plain
