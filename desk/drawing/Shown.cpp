#include "desk/drawing/Shown.h"

#include "desk/protocol/Names.h"

namespace desk::drawing {
namespace {

/// The time that a message box has left, or nothing.
using SecondsLeft = std::optional<int>;

void add(Shown& shown, const ScreenContent& screen, SecondsLeft /*seconds_left*/) {
  shown.texts = screen.texts;
  if (!screen.list.empty()) shown.list = screen.list;
}

void add(Shown& shown, const MessageContent& message, SecondsLeft seconds_left) {
  constexpr const char* kSigns[] = {"i", "!", "?"};  // in the order of the types
  shown.texts["text"] = message.text;
  shown.texts["type"] = kSigns[static_cast<int>(message.type)];
  shown.texts["timeout"] = seconds_left ? std::to_string(*seconds_left) + " s" : "";
}

void add(Shown& shown, const ChoiceContent& choice, SecondsLeft /*seconds_left*/) {
  shown.texts["text"] = choice.question;
}

void addStatus(Shown& shown, bool is_running) {
  shown.texts["status"] = statusOf(is_running);
  shown.shows_end = true;
}

void add(Shown& shown, const ConsoleContent& console, SecondsLeft /*seconds_left*/) {
  shown.texts["text"] = console.output;
  addStatus(shown, console.is_running);
}

void add(Shown& shown, const PackagesContent& content, SecondsLeft /*seconds_left*/) {
  addStatus(shown, content.is_running);
  shown.has_cursor = false;
  for (const auto& [name, state] : content.packages) {
    shown.rows.push_back({"", name, nameOf(state), ""});
    if (state != Package::State::waiting) shown.selected = shown.rows.size() - 1;
  }
}

}  // namespace

Shown shownBy(const LayerView& layer, SecondsLeft seconds_left) {
  Shown shown{.screen = layer.screen,
              .title = layer.title,
              .texts = {},
              .list = "list",
              .rows = {},
              .selected = layer.selected};
  for (const auto& [text, description, picture] : *layer.rows) {
    shown.rows.push_back({"", text, description, picture});
  }
  std::visit([&](const auto& content) { add(shown, content, seconds_left); }, layer.content);
  return shown;
}

}  // namespace desk::drawing
