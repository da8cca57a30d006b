#include <curses.h>
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "desk/terminal/Theme.h"

namespace desk::terminal {
namespace {

std::vector<Ink> everyInk() {
  std::vector<Ink> inks;
  for (int ink = 0; ink < kInks; ++ink) inks.push_back(Ink{ink});
  return inks;
}

TEST(Theme, NoInkHasTheColourOfItsGround) {
  for (const Theme theme : {Theme::dark, Theme::light}) {
    for (const Ink ink : everyInk()) {
      const Look look = lookOf(theme, ink);
      EXPECT_NE(look.foreground, look.background) << static_cast<int>(ink);
    }
  }
}

TEST(Theme, GroundIsBlackInTheDarkAndWhiteInTheLight) {
  EXPECT_EQ(lookOf(Theme::dark, Ink::text).background, COLOR_BLACK);
  EXPECT_EQ(lookOf(Theme::light, Ink::text).background, COLOR_WHITE);
}

TEST(Theme, ColourKeysHaveTheirColours) {
  for (const Theme theme : {Theme::dark, Theme::light}) {
    std::vector<short> grounds;
    for (const Ink ink : {Ink::red, Ink::green, Ink::yellow, Ink::blue}) {
      grounds.push_back(lookOf(theme, ink).background);
    }
    EXPECT_EQ(grounds, (std::vector<short>{COLOR_RED, COLOR_GREEN, COLOR_YELLOW, COLOR_BLUE}));
  }
}

TEST(Theme, CursorAndErrorsStandOutInColours) {
  for (const Theme theme : {Theme::dark, Theme::light}) {
    for (const Ink ink : {Ink::cursor, Ink::cursor_description, Ink::error}) {
      EXPECT_NE(lookOf(theme, ink).background, lookOf(theme, Ink::text).background)
          << static_cast<int>(ink);
    }
  }
}

TEST(Theme, WithoutColoursAttributesTellTheCursorHeadingsKeysAndErrorsApart) {
  const std::set<Ink> reverse = {Ink::cursor, Ink::cursor_description, Ink::error};
  const std::set<Ink> bold = {Ink::heading, Ink::red,   Ink::green,  Ink::yellow,
                              Ink::blue,    Ink::error, Ink::notice, Ink::hint};
  for (const Ink ink : everyInk()) {
    const unsigned expected =
        (reverse.contains(ink) ? A_REVERSE : 0U) | (bold.contains(ink) ? A_BOLD : 0U);
    EXPECT_EQ(lookOf(Theme::plain, ink).attributes, expected) << static_cast<int>(ink);
  }
}

}  // namespace
}  // namespace desk::terminal
