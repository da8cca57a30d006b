#include "desk/terminal/Television.h"

#include <algorithm>

namespace desk::terminal {
namespace {

struct Hint {
  const char* key;
  const char* meaning;
  const char* action;
  bool is_of_gui;  ///< is for the GUI, which does not take it while something is running
};

/// What the last line names, and a click on it does.
constexpr Hint kHints[] = {
    {"Enter", "OK", "ok", true},
    {"Esc", "Exit", "exit", true},
    {"l", "Log", action::kLog, false},
    {"?", "Help", action::kHelp, false},
};

constexpr const char* kHelp =
    "Up Down            move, or scroll a text\n"
    "Left Right         ten rows back or on\n"
    "Page Up, Page Down a page back or on\n"
    "Home End           the first, the last row\n"
    "Enter              OK\n"
    "Esc q Backspace    exit\n"
    "F1 r   F2 g        red, green\n"
    "F3 y   F4 b        yellow, blue\n"
    "0 to 9             the number keys\n"
    "l                  log lines and commands, or not\n"
    "Ctrl-L             draw anew\n"
    "Ctrl-C             end at once\n"
    "mouse, wheel       a row or a key, up and down";

void drawHelp(Picture& picture, const Size& size) {
  Canvas& canvas = picture.canvas;
  const std::vector<std::string> lines = canvas.lettering().wrapped(kHelp, size.columns);
  int width = 0;
  for (const std::string& line : lines) width = std::max(width, static_cast<int>(line.size()));
  const Area box = {(size.columns - width - 4) / 2,
                    (size.rows - static_cast<int>(lines.size()) - 2) / 2, width + 4,
                    static_cast<int>(lines.size()) + 2};
  canvas.box(box, "Keys");
  canvas.boxNote(box, "any key goes on", Ink::hint);
  int y = box.y;
  for (const std::string& line : lines) canvas.write(box.x + 2, ++y, line, Ink::text, width);
}

void askForRoom(Canvas& canvas, const Size& size) {
  const std::string text = "This terminal has " + std::to_string(size.columns) + "x" +
                           std::to_string(size.rows) + ". Please make it " +
                           std::to_string(Television::kLeast.columns) + "x" +
                           std::to_string(Television::kLeast.rows) + " or larger. Ctrl-C ends.";
  int y = 0;
  for (const std::string& line : canvas.lettering().wrapped(text, size.columns)) {
    canvas.write(0, y++, line);
  }
}

/// Whether something runs that the GUI does not take a key from.
bool isRunning(const LayerView& layer) {
  if (const auto* const console = layer.as<ConsoleContent>()) return console->is_running;
  const auto* const packages = layer.as<PackagesContent>();
  return packages && packages->is_running;
}

/// Returns a sign that turns while time goes on.
char spinner(Time now) {
  constexpr std::string_view kSigns = "|/-\\";
  const auto quarters =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() / 250;
  return kSigns[static_cast<std::size_t>(quarters) % kSigns.size()];
}

}  // namespace

void Television::show(const Frame& frame) {
  frame_ = frame;
  std::erase_if(lookings_, [&frame](const auto& looking) {
    return std::ranges::count(frame.layers, looking.first, &LayerView::id) == 0;
  });
}

void Television::say(const std::string& notice, Ink ink) {
  notice_ = notice;
  notice_ink_ = ink;
}

std::string Television::take(const std::string& action) {
  if (!has_room_) return "";
  notice_.clear();
  if (help_is_open_ || action == action::kHelp) {
    help_is_open_ = !help_is_open_;
    return "";
  }
  if (action == action::kLog) {
    log_is_open_ = !log_is_open_;
    return "";
  }
  const LayerView* const top = frame_.top();
  if (!top) return action;
  Looking& looking = lookings_[top->id];
  if (isScrolled(*top) && looking.scroll.move(action)) return "";
  const bool is_own = action == action::kFirst || action == action::kLast ||
                      action == action::kPageUp || action == action::kPageDown;
  return is_own ? looking.rows.wordFor(action, *top) : action;
}

Picture Television::picture(Size size, const Moment& moment) {
  Picture picture{Canvas(size, lettering_)};
  has_room_ = size.columns >= kLeast.columns && size.rows >= kLeast.rows;
  if (!has_room_) {
    askForRoom(picture.canvas, size);
    return picture;
  }
  constexpr int kLines = 2;  // the legend and the status
  const int log_rows = log_is_open_ ? size.rows / 3 : 0;
  const Area area = {0, 0, size.columns, size.rows - kLines - log_rows};
  drawFrame(picture, area, frame_, lookings_, moment.seconds_left);
  if (log_is_open_) log_.draw(picture.canvas, {0, area.height, size.columns, log_rows});
  drawLegend(picture, size.rows - 2, frame_);
  drawStatus(picture, size.rows - 1, moment);
  if (help_is_open_) {
    picture.targets = {{{0, 0, size.columns, size.rows}, action::kHelp}};
    drawHelp(picture, size);
  }
  return picture;
}

void Television::drawStatus(Picture& picture, int y, const Moment& moment) const {
  Canvas& canvas = picture.canvas;
  if (moment.busy_since) {
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(moment.now - *moment.busy_since);
    canvas.write(1, y,
                 std::string(1, spinner(moment.now)) + " busy for " +
                     std::to_string(seconds.count()) + " s" +
                     (command_.empty() ? "" : ": " + command_),
                 Ink::notice, canvas.size().columns - 2);
    return;
  }
  if (!notice_.empty()) {
    canvas.write(1, y, notice_, notice_ink_, canvas.size().columns - 2);
    return;
  }
  const bool is_running = frame_.top() && isRunning(*frame_.top());
  int x = 1;
  for (const Hint& hint : kHints) {
    if (is_running && hint.is_of_gui) continue;
    const int start = x;
    x += canvas.write(x, y, hint.key, Ink::hint);
    x += 1 + canvas.write(x + 1, y, hint.meaning);
    picture.targets.push_back({{start, y, x - start, 1}, hint.action});
    x += 3;
  }
}

}  // namespace desk::terminal
