#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "desk/drawing/Drawing.h"
#include "desk/frontend/FrontEnd.h"
#include "desk/web/Board.h"

namespace desk::web {

/// A front end for browsers: it draws what the GUI shows onto a board, and hands over what viewers
/// press there.
class WebFrontEnd : public FrontEnd {
 public:
  /// Both outlive the front end.
  WebFrontEnd(Board& board, drawing::Drawing& drawing);

  void show(const Frame& frame, bool is_answer) override;
  std::optional<Word> nextWord() override;
  pollfd input(bool is_free) const override {
    return {.fd = is_free ? board_.descriptor() : -1, .events = POLLIN, .revents = 0};
  }
  void refresh(const Moment& moment) override;
  void onEvent(const Event& event) override;
  void onLogLine(const std::string& line) override { addLine("print", line); }
  void onCommand(const std::string& command) override { addLine("command", command); }

 private:
  /// What a picture depends on: the frame by its number, the seconds left, whether the GUI is busy.
  using Drawn = std::tuple<std::uint64_t, std::optional<int>, bool>;

  void addNotices();
  void addLine(const char* kind, const std::string& text);

  Board& board_;
  drawing::Drawing& drawing_;
  Frame frame_;
  std::uint64_t frames_ = 0;
  std::optional<Drawn> drawn_;
  std::size_t notices_ = 0;
  std::string said_;  ///< what there is to say beside the picture
};

}  // namespace desk::web
