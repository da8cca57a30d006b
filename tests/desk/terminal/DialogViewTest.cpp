#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

Json message(const Json& more) {
  Json result = frame({{"screen", "MessageBox"}, {"type", "info"}, {"text", ""}, {"timeout", 0}});
  result.update(more);
  return result;
}

TEST(DialogView, MessageStandsInTheMiddle) {
  EXPECT_EQ(pictureOf(message({{"text", "The backup is done."}})), R"(






            ┌─ [info] ─────────────────────────────┐
            │                                      │
            │  The backup is done.                 │
            │                                      │
            └──────────────────────────────────────┘








 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(DialogView, MessageSaysWhenItClosesByItself) {
  EXPECT_EQ(pictureOf(message({{"title", "Note"}, {"text", "Done."}, {"timeout", 10}})),
            R"(






            ┌─ Note [info] ────────────────────────┐
            │                                      │
            │  Done.                               │
            │                                      │
            └───────────────────── closes in 10 s ─┘








 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(DialogView, EveryTypeIsNamedAfterTheTitleAndErrorsHaveTheirInk) {
  const struct {
    const char* title;
    const char* type;
    const char* edge;
  } messages[] = {
      {"", "info", "            ┌─ [info] ─────────────────────────────┐"},
      {"", "error", "            ┌─ [error] ────────────────────────────┐"},
      {"", "yesno", "            ┌─ [yesno] ────────────────────────────┐"},
      {"Note", "info", "            ┌─ Note [info] ────────────────────────┐"},
      {"Note", "error", "            ┌─ Note [error] ───────────────────────┐"},
      {"Note", "yesno", "            ┌─ Note [yesno] ───────────────────────┐"},
  };
  for (const auto& [title, type, edge] : messages) {
    Television television(utf8());
    television.show(message({{"type", type}, {"title", title}}), kStart);
    const Canvas canvas = television.picture(kTerminal, kStart).canvas;
    EXPECT_EQ(canvas.line(7), edge);
    EXPECT_EQ(inInk(canvas, 7, Ink::error), std::string(type) == "error" ? edge : "") << type;
  }
}

TEST(DialogView, SecondsLeftAreCountedDownInThePicture) {
  Television television(utf8());
  television.show(message({{"text", "Done."}, {"timeout", 10}}), kStart);
  const struct {
    int passed;
    const char* note;
  } times[] = {{0, "closes in 10 s"}, {1, "closes in 9 s"}, {10, "closes in 0 s"}};
  for (const auto& [passed, note] : times) {
    const Time now = kStart + std::chrono::seconds(passed);
    const Canvas canvas = television.picture(kTerminal, now).canvas;
    const std::string edge = inInk(canvas, 10, Ink::notice);
    EXPECT_EQ(edge.substr(edge.find_first_not_of(' ')), note);
    EXPECT_EQ(television.secondsLeft(now), 10 - passed);
  }
}

TEST(DialogView, LongTitleWidensIt) {
  Television television(ascii());
  television.show(message({{"title", "What was found on the hard disk today"}}), kStart);
  EXPECT_EQ(television.picture(kTerminal, kStart).canvas.line(7),
            "       +- What was found on the hard disk today [info] -+");
}

TEST(DialogView, LinesAndEmptyLinesOfAMessageStay) {
  EXPECT_EQ(pictureOf(message({{"text", "One\n\n  two\n"}, {"type", "error"}})), R"(





            ┌─ [error] ────────────────────────────┐
            │                                      │
            │  One                                 │
            │                                      │
            │    two                               │
            │                                      │
            └──────────────────────────────────────┘







 Enter OK   Esc Exit   l Log   ? Help
)");
}

TEST(DialogView, LongLinesAreWrapped) {
  EXPECT_EQ(pictureOf(message({{"text",
                                "The archive of this receiver could not be written, for there is "
                                "no room left on the device \u65e5\u672c."}})),
            R"(






  ┌─ [info] ─────────────────────────────────────────────────┐
  │                                                          │
  │  The archive of this receiver could not be written, for  │
  │  there is no room left on the device 日本.               │
  │                                                          │
  └──────────────────────────────────────────────────────────┘







 Enter OK   Esc Exit   l Log   ? Help
)");
}

}  // namespace
}  // namespace desk::terminal
