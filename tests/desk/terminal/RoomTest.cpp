#include <gtest/gtest.h>

#include <string>

#include "tests/desk/terminal/Pictures.h"

namespace desk::terminal {
namespace {

/// Whether a television on a terminal of this size asks for a larger one.
bool asksForRoom(Size size) {
  return pictureOf({}, size).starts_with("\nThis terminal has ");
}

TEST(Room, PictureNeedsTheLeastTerminalInBothDirections) {
  const struct {
    Size size;
    bool asks;
  } sizes[] = {
      {{64, 20}, false}, {{63, 20}, true},  {{64, 19}, true},  {{63, 19}, true},
      {{65, 21}, false}, {{200, 19}, true}, {{63, 100}, true}, {{500, 200}, false},
  };
  for (const auto& [size, asks] : sizes) {
    EXPECT_EQ(asksForRoom(size), asks) << size.columns << "x" << size.rows;
  }
}

TEST(Room, TooSmallTerminalSaysWhatIsNeededAsFarAsThatFits) {
  EXPECT_EQ(pictureOf({}, {63, 3}), R"(
This terminal has 63x3. Please make it 64x20 or larger. Ctrl-C
ends.

)");
  EXPECT_EQ(pictureOf({}, {20, 4}), R"(
This terminal has
20x4. Please make it
64x20 or larger.
Ctrl-C ends.
)");
  EXPECT_EQ(pictureOf({}, {1, 2}), "\nT\nh\n");
  EXPECT_EQ(pictureOf({}, {0, 0}), "\n");
}

TEST(Room, NothingIsDoneUnseen) {
  Television television(utf8());
  television.show(frame(list(3, 0)));
  EXPECT_EQ(clicks(television.picture({63, 20}, kAtStart)).size(), 0U);
  for (const char* action : {"ok", "exit", "row:1", action::kLast, action::kHelp, action::kLog}) {
    EXPECT_EQ(television.take(action), "") << action;
  }
  EXPECT_EQ(shown(television.picture(kTerminal, kAtStart).canvas), pictureOf(list(3, 0)));
  EXPECT_EQ(television.take("ok"), "ok");
}

TEST(Room, EveryKindOfScreenFitsIntoEverySizeFromTheLeastOn) {
  LayerView choice = list(100, 50);
  choice.content = ChoiceContent{"Which?"};
  const LayerView layers[] = {
      list(100, 99),
      {.content = MessageContent{.text = manyLines(40), .timeout = 9}},
      choice,
      {.content = ConsoleContent{.output = manyLines(100), .is_running = true}},
  };
  for (const LayerView& layer : layers) {
    for (int more = 0; more < 40; ++more) {
      const Size size = {kTerminal.columns + 2 * more, kTerminal.rows + more};
      Television television(utf8());
      television.show(frame(layer));
      television.take(action::kLog);
      const Picture picture = television.picture(size, kAtStart);
      EXPECT_EQ(picture.canvas.size(), size);
      EXPECT_EQ(picture.canvas.line(size.rows - 1), layer.as<ConsoleContent>()
                                                        ? " l Log   ? Help"
                                                        : " Enter OK   Esc Exit   l Log   ? Help");
      for (const auto& [area, action] : picture.targets) {
        EXPECT_TRUE(area.x >= 0 && area.y >= 0 && area.x + area.width <= size.columns &&
                    area.y + area.height <= size.rows)
            << action;
      }
    }
  }
}

}  // namespace
}  // namespace desk::terminal
