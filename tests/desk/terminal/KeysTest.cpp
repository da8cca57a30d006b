#include <curses.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "desk/terminal/Keys.h"

namespace desk::terminal {
namespace {

TEST(Keys, EveryKeyAsksForWhatItIsSaidToAndAnyOtherForNothing) {
  const std::map<std::string, std::set<int>> keys_of = {
      {"up", {KEY_UP}},
      {"down", {KEY_DOWN}},
      {"left", {KEY_LEFT}},
      {"right", {KEY_RIGHT}},
      {"page-up", {KEY_PPAGE}},
      {"page-down", {KEY_NPAGE}},
      {"first", {KEY_HOME, KEY_FIND}},
      {"last", {KEY_END, KEY_SELECT}},
      {"ok", {'\r', '\n', KEY_ENTER}},
      {"exit", {27, 'q', KEY_BACKSPACE, 127, '\b'}},
      {"red", {'r', KEY_F(1)}},
      {"green", {'g', KEY_F(2)}},
      {"yellow", {'y', KEY_F(3)}},
      {"blue", {'b', KEY_F(4)}},
      {"help", {'?'}},
      {"log", {'l'}},
      {"redraw", {'\f'}},
  };
  std::map<int, std::string> actions;
  for (const auto& [action, keys] : keys_of) {
    for (const int key : keys) actions[key] = action;
  }
  for (int digit = '0'; digit <= '9'; ++digit) actions[digit] = static_cast<char>(digit);
  for (int key = -1; key <= KEY_MAX; ++key) EXPECT_EQ(actionOfKey(key), actions[key]) << key;
}

}  // namespace
}  // namespace desk::terminal
