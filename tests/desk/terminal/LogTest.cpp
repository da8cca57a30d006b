#include <gtest/gtest.h>

#include <string>

#include "desk/terminal/Log.h"
#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

std::string pictureOfLog(const Log& log, Size size) {
  Canvas canvas(size, utf8());
  log.draw(canvas, {0, 0, size.columns, size.rows});
  return shown(canvas);
}

TEST(Log, NewestEntryIsTheLowestAndAnEmptyOneALine) {
  Log log;
  log.add("", "first", Ink::text);
  log.add("", "", Ink::text);
  log.add("$ ", "ls", Ink::description);
  EXPECT_EQ(pictureOfLog(log, {12, 6}), R"(
┌─ Log ────┐
│          │
│first     │
│          │
│$ ls      │
└──────────┘
)");
}

TEST(Log, ThousandEntriesAreKept) {
  Log log;
  for (int entry = 0; entry < 1003; ++entry) log.add("", std::to_string(entry), Ink::text);
  Canvas canvas({12, 1100}, utf8());
  log.draw(canvas, {0, 0, 12, 1100});
  EXPECT_EQ(canvas.line(98), "│          │");
  EXPECT_EQ(canvas.line(99), "│3         │");
  EXPECT_EQ(canvas.line(1098), "│1002      │");
}

TEST(Log, LongEntryIsWrappedAndItsBeginningGivesWay) {
  Log log;
  log.add("", "gone", Ink::text);
  log.add("$ ", "tar czf backup.tar.gz\n/etc", Ink::text);
  EXPECT_EQ(pictureOfLog(log, {12, 5}), R"(
┌─ Log ────┐
│  backup.t│
│  ar.gz   │
│  /etc    │
└──────────┘
)");
  EXPECT_EQ(pictureOfLog(log, {12, 7}), R"(
┌─ Log ────┐
│$ tar     │
│  czf     │
│  backup.t│
│  ar.gz   │
│  /etc    │
└──────────┘
)");
}

TEST(Log, EntryHasItsInkOnEveryLine) {
  Log log;
  log.add("*** ", "KeyError: x", Ink::error);
  log.add("", "next", Ink::text);
  Canvas canvas({14, 6}, utf8());
  log.draw(canvas, {0, 0, 14, 6});
  EXPECT_EQ(inInk(canvas, 1, Ink::error), " ***");
  EXPECT_EQ(inInk(canvas, 2, Ink::error), "   KeyError:");
  EXPECT_EQ(inInk(canvas, 3, Ink::error), "   x");
  EXPECT_EQ(inInk(canvas, 4, Ink::text), " next");
}

}  // namespace
}  // namespace desk::terminal
