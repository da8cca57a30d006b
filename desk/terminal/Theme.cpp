#include "desk/terminal/Theme.h"

#include <curses.h>

namespace desk::terminal {
namespace {

struct InkLook {
  Ink ink;
  Look dark;
  Look light;
  unsigned plain;
};

constexpr short kBlack = COLOR_BLACK;
constexpr short kRed = COLOR_RED;
constexpr short kGreen = COLOR_GREEN;
constexpr short kYellow = COLOR_YELLOW;
constexpr short kBlue = COLOR_BLUE;
constexpr short kCyan = COLOR_CYAN;
constexpr short kWhite = COLOR_WHITE;

/// In the order of the inks. A terminal without colours still tells the cursor, headings, keys and
/// errors from the rest.
constexpr InkLook kLooks[] = {
    // ink                    dark: on what, how               light                     plain
    {Ink::text, {kWhite, kBlack, 0}, {kBlack, kWhite, 0}, 0},
    {Ink::description, {kCyan, kBlack, 0}, {kBlue, kWhite, 0}, 0},
    {Ink::border, {kBlue, kBlack, A_BOLD}, {kBlue, kWhite, 0}, 0},
    {Ink::heading, {kYellow, kBlack, A_BOLD}, {kBlack, kWhite, A_BOLD}, A_BOLD},
    {Ink::cursor, {kWhite, kBlue, A_BOLD}, {kWhite, kBlue, A_BOLD}, A_REVERSE},
    {Ink::cursor_description, {kWhite, kBlue, 0}, {kWhite, kBlue, 0}, A_REVERSE},
    {Ink::picture, {kYellow, kBlack, 0}, {kRed, kWhite, 0}, 0},
    {Ink::red, {kWhite, kRed, A_BOLD}, {kWhite, kRed, A_BOLD}, A_BOLD},
    {Ink::green, {kBlack, kGreen, 0}, {kBlack, kGreen, 0}, A_BOLD},
    {Ink::yellow, {kBlack, kYellow, 0}, {kBlack, kYellow, 0}, A_BOLD},
    {Ink::blue, {kWhite, kBlue, A_BOLD}, {kWhite, kBlue, A_BOLD}, A_BOLD},
    {Ink::error, {kWhite, kRed, A_BOLD}, {kWhite, kRed, A_BOLD}, A_REVERSE | A_BOLD},
    {Ink::notice, {kYellow, kBlack, A_BOLD}, {kRed, kWhite, A_BOLD}, A_BOLD},
    {Ink::hint, {kWhite, kBlack, A_BOLD}, {kBlack, kWhite, A_BOLD}, A_BOLD},
};

/// Whether the table has every ink in its place.
constexpr bool isComplete() {
  int place = 0;
  for (const InkLook& look : kLooks) {
    if (look.ink != Ink{place++}) return false;
  }
  return place == kInks;
}
static_assert(isComplete());

}  // namespace

Look lookOf(Theme theme, Ink ink) {
  const InkLook& look = kLooks[static_cast<int>(ink)];
  if (theme == Theme::dark) return look.dark;
  if (theme == Theme::light) return look.light;
  return {kWhite, kBlack, look.plain};
}

}  // namespace desk::terminal
