#include "desk/terminal/Display.h"

#include <curses.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "desk/terminal/Keys.h"

namespace desk::terminal {
namespace {

/// How long an escape may be the beginning of a key, in milliseconds: long enough for what a
/// terminal sends at once, too short to be felt.
constexpr int kEscapeDelay = 25;

/// A key as some terminals send it.
struct Sequence {
  const char* sequence;
  int key;
};

/// What terminals send for the keys that are used here when they are not of the type that TERM
/// names, or not in the mode that it asks for.
constexpr Sequence kSequences[] = {
    {"\033[A", KEY_UP},     {"\033[B", KEY_DOWN},   {"\033[C", KEY_RIGHT},  {"\033[D", KEY_LEFT},
    {"\033OA", KEY_UP},     {"\033OB", KEY_DOWN},   {"\033OC", KEY_RIGHT},  {"\033OD", KEY_LEFT},
    {"\033[H", KEY_HOME},   {"\033[F", KEY_END},    {"\033OH", KEY_HOME},   {"\033OF", KEY_END},
    {"\033[1~", KEY_HOME},  {"\033[4~", KEY_END},   {"\033[7~", KEY_HOME},  {"\033[8~", KEY_END},
    {"\033[5~", KEY_PPAGE}, {"\033[6~", KEY_NPAGE}, {"\033OP", KEY_F(1)},   {"\033OQ", KEY_F(2)},
    {"\033OR", KEY_F(3)},   {"\033OS", KEY_F(4)},   {"\033[11~", KEY_F(1)}, {"\033[12~", KEY_F(2)},
    {"\033[13~", KEY_F(3)}, {"\033[14~", KEY_F(4)}, {"\033[[A", KEY_F(1)},  {"\033[[B", KEY_F(2)},
    {"\033[[C", KEY_F(3)},  {"\033[[D", KEY_F(4)},
};

/// Whether the user wants no colours.
bool forbidsColours() {
  const char* forbidden = std::getenv("NO_COLOR");
  return forbidden && *forbidden != '\0';
}

/// Reads what follows an escape. Returns whether it is the rest of a key that this terminal's
/// description does not know (ECMA-48), or of a letter with Alt: then the escape is no key.
bool skipRestOfKey() {
  const int second = getch();
  if (second == ERR) return false;
  if (second == kEscape) {
    ungetch(second);
    return false;
  }
  if (second == 'O') getch();
  if (second != '[') return true;
  for (int next = getch(); next != ERR && (next < '@' || next > '~');) next = getch();
  return true;
}

/// Returns the next key that has come, ERR for none. A change of size is none: it is seen by what
/// is drawn next.
int nextKey() {
  int key = getch();
  while (key == KEY_RESIZE) key = getch();
  return key;
}

/// Returns what a click asks for; a turn of the wheel moves the cursor.
std::string actionOfMouse(const Picture& shown) {
  MEVENT event{};
  if (getmouse(&event) != OK) return "";
  if (event.bstate & BUTTON4_PRESSED) return "up";
  if (event.bstate & BUTTON5_PRESSED) return "down";
  if (event.bstate & BUTTON1_PRESSED) return shown.actionAt(event.x, event.y);
  return "";
}

}  // namespace

struct Display::Screen {
  SCREEN* handle;
  Theme theme;

  int drawRun(const Canvas& canvas, int row, int column) const;
};

Display::Display(std::optional<Theme> theme) {
  // The terminal knows its size better than an environment that was set when it had another.
  for (const char* variable : {"LINES", "COLUMNS"}) unsetenv(variable);
  SCREEN* handle = newterm(nullptr, stdout, stdin);
  if (!handle) throw std::runtime_error("cannot take the terminal over");
  screen_ = std::make_unique<Screen>(Screen{handle, theme.value_or(Theme::dark)});
  set_escdelay(kEscapeDelay);
  cbreak();
  noecho();
  nonl();
  keypad(stdscr, TRUE);
  for (const Sequence& known : kSequences) define_key(known.sequence, known.key);
  nodelay(stdscr, TRUE);
  curs_set(0);
  mouseinterval(0);
  mousemask(BUTTON1_PRESSED | BUTTON4_PRESSED | BUTTON5_PRESSED, nullptr);
  if (!has_colors() || (!theme && forbidsColours())) screen_->theme = Theme::plain;
  if (screen_->theme == Theme::plain) return;
  start_color();
  for (int ink = 0; ink < kInks; ++ink) {
    const Look look = lookOf(screen_->theme, Ink{ink});
    init_pair(static_cast<short>(ink + 1), look.foreground, look.background);
  }
}

Display::~Display() {
  // What was pasted is not for the shell.
  flushinp();
  // A terminal may keep what its own screen has shown, if that has grown.
  erase();
  refresh();
  endwin();
  delscreen(screen_->handle);
}

Size Display::size() const {
  return {COLS, LINES};
}

void Display::show(const Picture& picture) {
  const Size size = picture.canvas.size();
  for (int row = 0; row < size.rows; ++row) {
    for (int column = 0; column < size.columns;)
      column = screen_->drawRun(picture.canvas, row, column);
  }
  refresh();
}

/// Draws the cells of one ink from this one on. Returns the column after them.
int Display::Screen::drawRun(const Canvas& canvas, int row, int column) const {
  const Ink ink = canvas.at(column, row).ink;
  std::string run;
  int end = column;
  for (; end < canvas.size().columns && canvas.at(end, row).ink == ink; ++end) {
    run += canvas.at(end, row).bytes;
  }
  const int pair = theme == Theme::plain ? 0 : static_cast<int>(ink) + 1;
  attr_set(lookOf(theme, ink).attributes, static_cast<short>(pair), nullptr);
  mvaddstr(row, column, run.c_str());
  return end;
}

void Display::forget() {
  clearok(curscr, TRUE);
}

void Display::giveBack() {
  endwin();
}

void Display::takeBack() {
  // Modes that were set while the shell had the terminal are to stay.
  if (isendwin()) def_shell_mode();
  reset_prog_mode();
  forget();
}

void Display::dropKeys() {
  flushinp();
}

std::optional<std::string> Display::read(const Picture& shown) {
  const int key = nextKey();
  if (key == ERR) return std::nullopt;
  if (key == KEY_MOUSE) return actionOfMouse(shown);
  if (key == kEscape && skipRestOfKey()) return "";
  return actionOfKey(key);
}

}  // namespace desk::terminal
