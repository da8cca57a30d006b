#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desk/terminal/Scroll.h"

namespace desk::terminal {
namespace {

constexpr int kPageSize = 10;

/// Returns the first shown line of a text that is at its last line.
int topAtEnd(Scroll& scroll, int count) {
  return scroll.top(count, kPageSize, count - 1);
}

TEST(Scroll, TextThatFitsIsShownFromItsBeginning) {
  Scroll scroll;
  for (const int count : {0, 1, 9, 10}) EXPECT_EQ(topAtEnd(scroll, count), 0) << count;
}

TEST(Scroll, GrowingTextIsFollowed) {
  Scroll scroll;
  for (const int count : {11, 12, 100})
    EXPECT_EQ(topAtEnd(scroll, count), count - kPageSize) << count;
}

TEST(Scroll, LineThatTheTextIsAtMovesItAsLittleAsNeeded) {
  Scroll scroll;
  const struct {
    int current;
    int top;
  } steps[] = {{0, 0}, {9, 0}, {10, 1}, {99, 90}, {95, 90}, {40, 40}, {0, 0}};
  for (const auto& [current, top] : steps) {
    EXPECT_EQ(scroll.top(100, kPageSize, current), top) << current;
  }
}

TEST(Scroll, MovesLikeTheCursorOfAList) {
  const struct {
    const char* action;
    int top;
  } steps[] = {
      {"up", 89},
      {"up", 88},
      {"down", 89},
      {"left", 79},
      {"right", 89},
      {"right", 90},
      {action::kPageUp, 80},
      {action::kPageUp, 70},
      {action::kPageDown, 80},
      {action::kFirst, 0},
      {"up", 0},
      {"left", 0},
      {action::kLast, 90},
      {"down", 90},
  };
  Scroll scroll;
  EXPECT_EQ(topAtEnd(scroll, 100), 90);
  for (const auto& [action, top] : steps) {
    EXPECT_TRUE(scroll.move(action)) << action;
    EXPECT_EQ(topAtEnd(scroll, 100), top) << action;
  }
}

TEST(Scroll, OtherActionsAreNotItsOwn) {
  Scroll scroll;
  EXPECT_EQ(topAtEnd(scroll, 100), 90);
  for (const char* action : {"ok", "exit", "red", "0", "row:3", "", action::kHelp, action::kLog}) {
    EXPECT_FALSE(scroll.move(action)) << action;
    EXPECT_EQ(topAtEnd(scroll, 100), 90) << action;
  }
}

TEST(Scroll, ViewerWhoHasMovedAwayStaysWhileTheTextGrows) {
  Scroll scroll;
  topAtEnd(scroll, 100);
  scroll.move("up");
  for (const int count : {100, 101, 500}) EXPECT_EQ(topAtEnd(scroll, count), 89) << count;
}

TEST(Scroll, AtTheEndTheTextIsFollowedAgain) {
  for (const char* action : {"down", "right", action::kPageDown, action::kLast}) {
    Scroll scroll;
    topAtEnd(scroll, 100);
    scroll.move("up");
    scroll.move(action);
    EXPECT_EQ(topAtEnd(scroll, 120), 110) << action;
  }
}

TEST(Scroll, MoveInATextThatFitsChangesNothing) {
  for (const char* action : {"up", "down", action::kFirst, action::kLast}) {
    Scroll scroll;
    topAtEnd(scroll, 5);
    EXPECT_TRUE(scroll.move(action)) << action;
    EXPECT_EQ(topAtEnd(scroll, 5), 0) << action;
    EXPECT_EQ(topAtEnd(scroll, 15), 5) << action;
  }
}

TEST(Scroll, LargerPageShowsNoMoreThanThereIs) {
  Scroll scroll;
  topAtEnd(scroll, 100);
  scroll.move("up");
  EXPECT_EQ(scroll.top(100, 50, 99), 50);
  EXPECT_EQ(scroll.top(100, 200, 99), 0);
}

TEST(Scroll, PageWithoutRoomCountsAsOneLine) {
  Scroll scroll;
  EXPECT_EQ(scroll.top(3, 0, 2), 2);
  EXPECT_EQ(scroll.top(3, -4, 2), 2);
}

}  // namespace
}  // namespace desk::terminal
