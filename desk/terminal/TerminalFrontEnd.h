#pragma once

#include <deque>
#include <filesystem>
#include <optional>
#include <string>

#include "desk/frontend/FrontEnd.h"
#include "desk/supervisor/Record.h"
#include "desk/terminal/Display.h"
#include "desk/terminal/Lettering.h"
#include "desk/terminal/Television.h"

namespace desk::terminal {

/// A front end on the terminal: keys and clicks become words, frames become pictures.
class TerminalFrontEnd : public FrontEnd {
 public:
  /// Takes the terminal over; the Signals that are to be held back have to be already. The file
  /// `record` gets every frame that answers a word and every event, one JSON object a line, as the
  /// script's front end prints them; "" for none. Raises std::runtime_error when the terminal
  /// cannot be taken over or the record not be written.
  TerminalFrontEnd(std::optional<Theme> theme, const std::filesystem::path& record);

  void show(const Frame& frame, bool is_answer) override;
  std::optional<Word> nextWord() override;
  pollfd input(bool is_free) const override;

  /// Raises std::runtime_error when the terminal has gone.
  void takeInput(short events) override;

  void refresh(const Moment& moment) override;
  void suspend() override { display_.giveBack(); }
  void resume() override { display_.takeBack(); }
  void onEvent(const Event& event) override;
  void onLogLine(const std::string& line) override;
  void onCommand(const std::string& command) override;

 private:
  void showPicture();
  bool takesKeys() const;

  Record record_;
  Lettering lettering_ = Lettering::ofLocale();
  Television television_{lettering_};
  Display display_;
  Moment moment_{};
  Picture picture_{Canvas({0, 0}, lettering_)};
  std::deque<std::string> pressed_;  ///< what is to be done once the GUI has answered
  bool has_frame_ = false;           ///< whether this GUI has shown one
};

}  // namespace desk::terminal
