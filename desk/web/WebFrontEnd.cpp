#include "desk/web/WebFrontEnd.h"

#include <nlohmann/json.hpp>
#include <vector>

#include "base/Escape.h"
#include "desk/protocol/Names.h"

namespace desk::web {
namespace {

/// What the page gets.
using Json = nlohmann::ordered_json;

using Parts = std::vector<std::string>;

/// Returns the last line of a text that is not empty.
std::string lastLineOf(const std::string& text) {
  const std::size_t end = text.find_last_not_of('\n') + 1;
  const std::size_t begin = text.substr(0, end).rfind('\n') + 1;
  return text.substr(begin, end - begin);
}

void add(Parts& parts, const ScreenContent& screen) {
  const Parts messages = messagesOf(screen);
  parts.insert(parts.end(), messages.begin(), messages.end());
}

void add(Parts& parts, const MessageContent& message) {
  parts.push_back(message.text);
}

void add(Parts& parts, const ChoiceContent& choice) {
  parts.push_back(choice.question);
}

void add(Parts& parts, const ConsoleContent& console) {
  parts.push_back(lastLineOf(console.output));
  parts.emplace_back(statusOf(console.is_running));
}

void add(Parts& parts, const PackagesContent& content) {
  for (const auto& [name, state] : content.packages) {
    if (state == Package::State::running) parts.push_back(name);
  }
  parts.emplace_back(statusOf(content.is_running));
}

/// Returns what a screen reader is to say of a screen or dialog when it comes up or changes: its
/// title and texts, what is going on, and the row with the cursor.
std::string announcementOf(const LayerView& layer) {
  Parts parts = {layer.title};
  std::visit([&parts](const auto& content) { add(parts, content); }, layer.content);
  if (layer.selected < layer.rows->size()) {
    const Row& row = (*layer.rows)[layer.selected];
    parts.insert(parts.end(), {row.text, row.description});
  }
  std::string announcement;
  for (const std::string& part : parts) {
    if (!part.empty()) announcement += (announcement.empty() ? "" : ". ") + part;
  }
  return announcement;
}

}  // namespace

WebFrontEnd::WebFrontEnd(Board& board, drawing::Drawing& drawing)
    : board_(board), drawing_(drawing) {
  addNotices();
}

void WebFrontEnd::show(const Frame& frame, bool /*is_answer*/) {
  frame_ = frame;
  ++frames_;
}

std::optional<Word> WebFrontEnd::nextWord() {
  const auto pressed = board_.takeWord();
  if (!pressed) return std::nullopt;
  said_.clear();
  return parseWord(*pressed);
}

void WebFrontEnd::refresh(const Moment& moment) {
  const bool is_busy = moment.busy_since.has_value();
  const Drawn drawn{frames_, moment.seconds_left, is_busy};
  const LayerView* const top = frame_.top();
  if (drawn == drawn_ || !top) return;
  drawn_ = drawn;
  const Json picture = {{"svg", drawing_.draw(frame_, moment.seconds_left)},
                        {"title", top->title},
                        {"announcement", announcementOf(*top)},
                        {"state", is_busy ? "The receiver is busy …" : said_}};
  board_.showPicture(picture.dump());
  addNotices();
}

/// Adds what the drawing has noticed since it was asked last.
void WebFrontEnd::addNotices() {
  const auto& lines = drawing_.notices().lines();
  for (; notices_ < lines.size(); ++notices_) {
    addLine("notice", "skin: " + base::escapeControls(lines[notices_]));
  }
}

void WebFrontEnd::addLine(const char* kind, const std::string& text) {
  board_.addLine(Json({{"kind", kind}, {"text", text}}).dump());
}

void WebFrontEnd::onEvent(const Event& event) {
  switch (event.kind) {
    case Event::Kind::gui_killed:
      while (board_.takeWord()) {
      }
      addLine("notice", "the GUI was killed");
      break;
    case Event::Kind::gui_started:
      said_ = "The GUI was killed and has been started again.";
      addLine("notice", "the GUI was started again");
      break;
    case Event::Kind::error:
      said_ = "Error: " + event.text;
      addLine("error", event.text);
      break;
  }
}

}  // namespace desk::web
