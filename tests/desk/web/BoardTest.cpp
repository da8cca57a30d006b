#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "desk/web/Board.h"

namespace desk::web {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kAtOnce(0);
constexpr const char* kNothing = "event: alive\ndata: null\n\n";

struct BoardTest : testing::Test {
  std::string events(Board::Seen& seen) { return board.nextEvents(seen, kAtOnce).value_or("end"); }

  bool hasWords() const {
    pollfd watched = {.fd = board.descriptor(), .events = POLLIN, .revents = 0};
    return poll(&watched, 1, 0) == 1;
  }

  Board board;
};

TEST_F(BoardTest, ViewerSeesTheLastPictureOnce) {
  Board::Seen seen;
  EXPECT_EQ(events(seen), kNothing);
  EXPECT_EQ(board.svg(), "");
  board.showPicture({{"svg", "first"}});
  board.showPicture({{"svg", "second"}});
  EXPECT_EQ(events(seen), "event: picture\ndata: {\"svg\":\"second\"}\n\n");
  EXPECT_EQ(events(seen), kNothing);
  EXPECT_EQ(board.svg(), "second");
}

TEST_F(BoardTest, ViewerSeesEveryLineAndANewOneThoseThatAreKept) {
  Board::Seen first;
  board.addLine("one");
  EXPECT_EQ(events(first), "event: log\ndata: [\"one\"]\n\n");
  board.addLine("two");
  board.addLine("three");
  EXPECT_EQ(events(first), "event: log\ndata: [\"two\",\"three\"]\n\n");
  Board::Seen second;
  EXPECT_EQ(events(second), "event: log\ndata: [\"one\",\"two\",\"three\"]\n\n");
}

TEST_F(BoardTest, OnlyTheLastLinesAreKept) {
  for (int line = 0; line < 2000; ++line) board.addLine(line);
  Board::Seen seen;
  const std::string events = this->events(seen);
  EXPECT_TRUE(events.starts_with("event: log\ndata: [1500,1501,")) << events.substr(0, 40);
  EXPECT_TRUE(events.ends_with(",1998,1999]\n\n"));
}

TEST_F(BoardTest, EndComesAfterWhatHasNotBeenSeen) {
  Board::Seen seen;
  board.addLine("last");
  board.end();
  EXPECT_EQ(events(seen), "event: log\ndata: [\"last\"]\n\n");
  EXPECT_EQ(events(seen), "end");
}

TEST_F(BoardTest, WaitingViewerHearsAtOnce) {
  Board::Seen seen;
  std::thread thread([this] { board.showPicture({{"svg", "picture"}}); });
  EXPECT_EQ(board.nextEvents(seen, std::chrono::hours(1)),
            "event: picture\ndata: {\"svg\":\"picture\"}\n\n");
  thread.join();
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
