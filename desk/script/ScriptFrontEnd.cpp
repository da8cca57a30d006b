#include "desk/script/ScriptFrontEnd.h"

#include <ostream>
#include <stdexcept>
#include <string_view>

#include "desk/protocol/Json.h"
#include "desk/protocol/Names.h"
#include "desk/terminal/Views.h"

namespace desk {
namespace {

constexpr terminal::Size kTerminal = {80, 24};

/// Whether a line of a picture has nothing but the edges of a box.
bool isBlank(const std::string& line, std::string_view edge) {
  return line.starts_with(edge) && line.find_first_not_of(' ', edge.size()) == line.rfind(edge);
}

/// Returns what a terminal shows of the frame, with as few empty lines as there can be.
std::string pictureOf(const Frame& frame) {
  const terminal::Lettering lettering = terminal::Lettering::ofLocale();
  terminal::Picture picture{terminal::Canvas(kTerminal, lettering)};
  terminal::Lookings lookings;
  drawFrame(picture, {0, 0, kTerminal.columns, kTerminal.rows - 1}, frame, lookings,
            timeoutOf(frame));
  drawLegend(picture, kTerminal.rows - 1, frame);
  std::string text;
  std::string before;
  for (int row = 0; row < kTerminal.rows; ++row) {
    const std::string line = picture.canvas.line(row);
    if (!line.empty() && !(line == before && isBlank(line, lettering.either("│", "|"))))
      text += line + "\n";
    before = line;
  }
  return text;
}

std::string textOf(const Frame& frame) {
  const std::string& word = frame.word.text;
  return (word.empty() ? "\n" : "\n[" + word + "]\n") +
         (frame.top() ? pictureOf(frame) : "(the menu is closed)\n");
}

}  // namespace

void ScriptFrontEnd::show(const Frame& frame, bool /*is_answer*/) {
  output_ << (format_ == FrameFormat::json ? jsonOf(frame) + "\n" : textOf(frame)) << std::flush;
  if (take_) take_(frame);
}

std::optional<Word> ScriptFrontEnd::nextWord() {
  if (next_ == words_.size()) return std::nullopt;
  return words_[next_++];
}

void ScriptFrontEnd::onMissingRow(const Word& word) {
  throw std::runtime_error(word.text + ": the shown screen has no such row");
}

void ScriptFrontEnd::onEvent(const Event& event) {
  if (format_ == FrameFormat::json) {
    output_ << jsonOf(event) << std::endl;
    return;
  }
  output_ << "\n*** " << nameOf(event.kind) << (event.text.empty() ? "" : ": ") << event.text
          << std::endl;
}

}  // namespace desk
