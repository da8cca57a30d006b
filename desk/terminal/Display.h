#pragma once

#include <memory>
#include <optional>
#include <string>

#include "desk/terminal/Picture.h"
#include "desk/terminal/Theme.h"

namespace desk::terminal {

/// The terminal, taken over by curses(3) from its construction to its destruction.
class Display {
 public:
  /// Takes the terminal over. `theme`: nothing for colours where the terminal has them and
  /// NO_COLOR (no-color.org) does not forbid them. Raises std::runtime_error when it cannot.
  explicit Display(std::optional<Theme> theme);
  ~Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  Size size() const;

  /// Shows the picture. A click asks for what this one has at its place.
  void show(const Picture& picture);

  /// Draws everything anew with the next picture, whatever the terminal shows.
  void forget();

  /// Leaves the terminal to the shell for a while.
  void giveBack();

  /// Takes the terminal over again, after a shell has had it.
  void takeBack();

  /// Forgets the keys that have come and were not read.
  void dropKeys();

  /// Returns what the next key or click that has come asks for, "" for one without a meaning;
  /// nothing when none has come. Never waits.
  std::optional<std::string> read(const Picture& shown);

 private:
  struct Screen;
  std::unique_ptr<Screen> screen_;
};

}  // namespace desk::terminal
