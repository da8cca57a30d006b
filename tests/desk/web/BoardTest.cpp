#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <string>

#include "desk/web/Board.h"

namespace desk::web {
namespace {

struct BoardTest : testing::Test {
  /// Returns all that a viewer has not seen.
  std::string events(Board::Seen& seen) {
    std::string events;
    while (const auto event = board.next(seen)) events += *event;
    return events;
  }

  static bool isReadable(int descriptor) {
    pollfd watched = {.fd = descriptor, .events = POLLIN, .revents = 0};
    return poll(&watched, 1, 0) == 1;
  }

  bool hasWords() const { return isReadable(board.descriptor()); }

  Board board;
};

TEST_F(BoardTest, ViewerSeesTheLastPictureOnce) {
  Board::Seen seen;
  EXPECT_EQ(events(seen), "");
  board.showPicture("first");
  board.showPicture("second");
  EXPECT_EQ(events(seen), "event: picture\ndata: second\n\n");
  EXPECT_EQ(events(seen), "");
}

TEST_F(BoardTest, ViewerSeesEveryLineAndANewOneThoseThatAreKept) {
  Board::Seen first;
  board.addLine("one");
  EXPECT_EQ(events(first), "event: log\ndata: one\n\n");
  board.addLine("two");
  board.addLine("three");
  EXPECT_EQ(events(first), "event: log\ndata: two\n\nevent: log\ndata: three\n\n");
  Board::Seen second;
  EXPECT_EQ(events(second),
            "event: log\ndata: one\n\nevent: log\ndata: two\n\n"
            "event: log\ndata: three\n\n");
}

TEST_F(BoardTest, OnlyTheLastLinesAreKept) {
  for (int line = 0; line < 2000; ++line) board.addLine(std::to_string(line));
  std::string expected;
  for (int line = 1500; line < 2000; ++line) {
    expected += "event: log\ndata: " + std::to_string(line) + "\n\n";
  }
  Board::Seen seen;
  EXPECT_EQ(events(seen), expected);
}

TEST_F(BoardTest, EndComesOnceAfterWhatHasNotBeenSeen) {
  Board::Seen seen;
  board.addLine("last");
  board.end();
  EXPECT_EQ(events(seen), "event: log\ndata: last\n\nevent: end\ndata: null\n\n");
  EXPECT_EQ(events(seen), "");
  EXPECT_TRUE(seen.end);
}

TEST_F(BoardTest, NewsAreThereToBeHeard) {
  const auto hears = [this] {
    eventfd_t count = 0;
    return isReadable(board.news()) && eventfd_read(board.news(), &count) == 0;
  };
  EXPECT_FALSE(hears());
  board.showPicture("picture");
  EXPECT_TRUE(hears());
  EXPECT_FALSE(hears());
  board.addLine("line");
  EXPECT_TRUE(hears());
  board.end();
  EXPECT_TRUE(hears());
}

TEST_F(BoardTest, WordsAreTakenInTheirOrder) {
  EXPECT_FALSE(hasWords());
  EXPECT_TRUE(board.press("down"));
  EXPECT_TRUE(board.press("ok"));
  EXPECT_TRUE(hasWords());
  EXPECT_EQ(board.takeWord(), "down");
  EXPECT_TRUE(hasWords());
  EXPECT_EQ(board.takeWord(), "ok");
  EXPECT_FALSE(hasWords());
  EXPECT_EQ(board.takeWord(), std::nullopt);
}

TEST_F(BoardTest, OnlySoManyWordsWait) {
  int pressed = 0;
  while (pressed < 1000 && board.press("up")) ++pressed;
  EXPECT_EQ(pressed, 64);
  EXPECT_EQ(board.takeWord(), "up");
  EXPECT_TRUE(board.press("up"));
}

}  // namespace
}  // namespace desk::web
