#include <gtest/gtest.h>

#include <optional>

#include "desk/frontend/Countdown.h"

namespace desk {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr Time kStart{};

/// Returns a message that closes by itself after `timeout` seconds.
Frame box(std::uint64_t id, int timeout) {
  return {.layers = {LayerView{.id = id, .content = MessageContent{.timeout = timeout}}}};
}

Frame menu(std::uint64_t id) {
  return {.layers = {LayerView{.id = id}}};
}

TEST(Countdown, OnlyBoxesWithATimeOutAreCounted) {
  EXPECT_EQ(Countdown().secondsLeft(kStart), std::nullopt);
  for (const Frame& shown : {Frame(), menu(1), box(1, 0), box(1, -1)}) {
    Countdown countdown;
    countdown.show(shown, kStart);
    EXPECT_EQ(countdown.secondsLeft(kStart), std::nullopt);
  }
}

TEST(Countdown, SecondsLeftAreRoundedUpAndEndAtNought) {
  Countdown countdown;
  countdown.show(box(1, 3), kStart);
  const struct {
    int passed;
    int left;
  } times[] = {{0, 3},    {1, 3},    {999, 3},  {1000, 2}, {1001, 2},
               {2000, 1}, {2999, 1}, {3000, 0}, {3001, 0}, {99000, 0}};
  for (const auto& [passed, left] : times) {
    EXPECT_EQ(countdown.secondsLeft(kStart + milliseconds(passed)), left) << passed;
  }
}

/// Returns the seconds left five seconds after the box 1 of 10 was shown, when `next` is shown
/// then.
std::optional<int> leftAfter(const Frame& next) {
  Countdown countdown;
  countdown.show(box(1, 10), kStart);
  const Time later = kStart + seconds(5);
  countdown.show(next, later);
  return countdown.secondsLeft(later);
}

TEST(Countdown, GoesOnWhileTheSameBoxIsShownAndBeginsAnewWithAnother) {
  EXPECT_EQ(leftAfter(box(1, 10)), 5);
  EXPECT_EQ(leftAfter(box(2, 10)), 10);
}

TEST(Countdown, EndsWithTheBox) {
  EXPECT_EQ(leftAfter(menu(2)), std::nullopt);
  EXPECT_EQ(leftAfter(Frame()), std::nullopt);
  EXPECT_EQ(leftAfter(box(2, 0)), std::nullopt);
}

TEST(Countdown, BeginsAnewWhenTheBoxComesBack) {
  Countdown countdown;
  countdown.show(box(1, 10), kStart);
  countdown.show(menu(2), kStart + seconds(2));
  countdown.show(box(1, 10), kStart + seconds(4));
  EXPECT_EQ(countdown.secondsLeft(kStart + seconds(4)), 10);
}

}  // namespace
}  // namespace desk
