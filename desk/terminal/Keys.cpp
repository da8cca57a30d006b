#include "desk/terminal/Keys.h"

#include <curses.h>

#include <algorithm>
#include <iterator>

#include "desk/terminal/Picture.h"

namespace desk::terminal {
namespace {

constexpr int kDelete = 127;
constexpr int control(char letter) {
  return letter - '@';
}

struct KeyAction {
  int key;
  const char* action;
};

constexpr KeyAction kActions[] = {
    {KEY_UP, "up"},
    {KEY_DOWN, "down"},
    {KEY_LEFT, "left"},
    {KEY_RIGHT, "right"},
    {KEY_PPAGE, action::kPageUp},
    {KEY_NPAGE, action::kPageDown},
    {KEY_HOME, action::kFirst},
    {KEY_FIND, action::kFirst},  // what Home is on some terminals
    {KEY_END, action::kLast},
    {KEY_SELECT, action::kLast},  // what End is on some terminals
    {'\r', "ok"},
    {'\n', "ok"},
    {KEY_ENTER, "ok"},
    {kEscape, "exit"},
    {'q', "exit"},
    {KEY_BACKSPACE, "exit"},
    {kDelete, "exit"},  // what Backspace sends where the terminal's description is wrong
    {control('H'), "exit"},
    {KEY_F(1), "red"},
    {'r', "red"},
    {KEY_F(2), "green"},
    {'g', "green"},
    {KEY_F(3), "yellow"},
    {'y', "yellow"},
    {KEY_F(4), "blue"},
    {'b', "blue"},
    {'?', action::kHelp},
    {'l', action::kLog},
    {control('L'), action::kRedraw},
};

}  // namespace

std::string actionOfKey(int key) {
  if (key >= '0' && key <= '9') return std::string(1, static_cast<char>(key));
  const auto* found =
      std::ranges::find_if(kActions, [key](const KeyAction& known) { return known.key == key; });
  return found == std::end(kActions) ? "" : found->action;
}

}  // namespace desk::terminal
