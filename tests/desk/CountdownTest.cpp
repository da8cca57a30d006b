#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "desk/play/Countdown.h"

namespace desk {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr Time kStart{};

/// Returns a frame with these parts.
Json frame(const Json& parts = Json::object()) {
  Json frame = {{"key", ""}, {"screen", ""}, {"title", ""}};
  frame.update(parts);
  return frame;
}

/// Returns a message that closes by itself after `timeout` seconds.
Json box(int timeout, const std::string& word = "") {
  return frame({{"key", word},
                {"screen", "MessageBox"},
                {"type", "info"},
                {"text", "Done."},
                {"timeout", timeout}});
}

Json with(Json frame, const char* key, const char* value) {
  frame[key] = value;
  return frame;
}

TEST(Countdown, NothingIsCountedBeforeABoxIsShown) {
  EXPECT_EQ(Countdown().secondsLeft(kStart), std::nullopt);
}

TEST(Countdown, OnlyBoxesWithATimeOutAreCounted) {
  for (const Json& shown : {frame(), box(0), box(-1)}) {
    Countdown countdown;
    countdown.show(shown, kStart);
    EXPECT_EQ(countdown.secondsLeft(kStart), std::nullopt) << shown;
  }
}

TEST(Countdown, SecondsLeftAreRoundedUpAndEndAtNought) {
  Countdown countdown;
  countdown.show(box(3), kStart);
  const struct {
    int passed;
    int left;
  } times[] = {{0, 3},    {1, 3},    {999, 3},  {1000, 2}, {1001, 2},
               {2000, 1}, {2999, 1}, {3000, 0}, {3001, 0}, {99000, 0}};
  for (const auto& [passed, left] : times) {
    EXPECT_EQ(countdown.secondsLeft(kStart + milliseconds(passed)), left) << passed;
  }
}

/// Returns the seconds left five seconds after a box of 10 was shown, when `next` is shown then.
std::optional<int> leftAfter(const Json& next) {
  Countdown countdown;
  countdown.show(box(10), kStart);
  const Time later = kStart + seconds(5);
  countdown.show(next, later);
  return countdown.secondsLeft(later);
}

TEST(Countdown, GoesOnWhileTheSameBoxIsShown) {
  for (const char* word : {"", "down", "up", "red", "frame", "wait", "row:1", "0"}) {
    EXPECT_EQ(leftAfter(box(10, word)), 5) << word;
  }
}

TEST(Countdown, BeginsAnewAfterAWordThatClosesEveryBox) {
  for (const char* word : {"ok", "exit", "timeout"})
    EXPECT_EQ(leftAfter(box(10, word)), 10) << word;
}

TEST(Countdown, BeginsAnewWithAnotherBox) {
  EXPECT_EQ(leftAfter(box(7)), 7);
  for (const char* key : {"screen", "title", "type", "text"}) {
    EXPECT_EQ(leftAfter(with(box(10), key, "other")), 10) << key;
  }
}

TEST(Countdown, CursorOfAQuestionDoesNotDelayIt) {
  Json moved = box(10, "down");
  moved["selected"] = 1;
  EXPECT_EQ(leftAfter(moved), 5);
}

TEST(Countdown, EndsWithTheBox) {
  EXPECT_EQ(leftAfter(frame({{"key", "ok"}})), std::nullopt);
  EXPECT_EQ(leftAfter(frame({{"key", "frame"}})), std::nullopt);
  EXPECT_EQ(leftAfter(box(0)), std::nullopt);
}

TEST(Countdown, BeginsAnewWhenTheBoxComesBack) {
  Countdown countdown;
  countdown.show(box(10), kStart);
  countdown.show(frame({{"key", "frame"}}), kStart + seconds(2));
  countdown.show(box(10, "frame"), kStart + seconds(4));
  EXPECT_EQ(countdown.secondsLeft(kStart + seconds(4)), 10);
}

}  // namespace
}  // namespace desk
