#include <curses.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "desk/terminal/Keys.h"

namespace desk::terminal {
namespace {

const std::map<int, std::string> kActions = {
    {'\b', "exit"},
    {'\n', "ok"},
    {'\f', "redraw"},
    {'\r', "ok"},
    {27, "exit"},
    {127, "exit"},
    {'?', "help"},
    {'b', "blue"},
    {'g', "green"},
    {'l', "log"},
    {'q', "exit"},
    {'r', "red"},
    {'y', "yellow"},
    {'0', "0"},
    {'1', "1"},
    {'2', "2"},
    {'3', "3"},
    {'4', "4"},
    {'5', "5"},
    {'6', "6"},
    {'7', "7"},
    {'8', "8"},
    {'9', "9"},
    {KEY_UP, "up"},
    {KEY_DOWN, "down"},
    {KEY_LEFT, "left"},
    {KEY_RIGHT, "right"},
    {KEY_PPAGE, "page-up"},
    {KEY_NPAGE, "page-down"},
    {KEY_HOME, "first"},
    {KEY_FIND, "first"},
    {KEY_END, "last"},
    {KEY_SELECT, "last"},
    {KEY_ENTER, "ok"},
    {KEY_BACKSPACE, "exit"},
    {KEY_F(1), "red"},
    {KEY_F(2), "green"},
    {KEY_F(3), "yellow"},
    {KEY_F(4), "blue"},
};

TEST(Keys, EveryKeyAsksForWhatItIsSaidToAndAnyOtherForNothing) {
  for (int key = -1; key <= KEY_MAX; ++key) {
    const auto known = kActions.find(key);
    EXPECT_EQ(actionOfKey(key), known == kActions.end() ? "" : known->second) << key;
  }
}

}  // namespace
}  // namespace desk::terminal
