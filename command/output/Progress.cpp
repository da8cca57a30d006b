#include "command/output/Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "base/Escape.h"
#include "command/output/Table.h"

namespace output {
namespace {

/// How often the bar is drawn; what is done sooner gets none.
constexpr std::chrono::milliseconds kBetweenBars(200);

constexpr std::size_t kWidth = 20;

/// Returns how many columns the terminal has.
std::size_t columns() {
  winsize size{};
  constexpr std::size_t kUsual = 80;
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

/// Erases the line (EL of ECMA-48) and goes back to its beginning.
constexpr const char* kClearLine = "\r\033[K";

}  // namespace

Progress::Progress(std::string name, std::uint64_t size, bool is_wanted)
    : name_(std::move(name)), size_(size), is_shown_(is_wanted && isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (has_bar_) std::fputs(kClearLine, stderr);
}

void Progress::show(std::uint64_t done) {
  const auto now = Clock::now();
  if (!is_shown_ || now - last_ < kBetweenBars) return;
  last_ = now;
  has_bar_ = true;
  const double part =
      size_ == 0 ? 1 : std::min(1.0, static_cast<double>(done) / static_cast<double>(size_));
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  std::string bar(static_cast<std::size_t>(part * kWidth), '#');
  bar.resize(kWidth, '-');
  const auto amount = [](double bytes) { return sizeText(static_cast<long long>(bytes)); };
  std::string line = std::to_string(static_cast<int>(part * 100)) + "%  " +
                     amount(static_cast<double>(done)) + " of " +
                     amount(static_cast<double>(size_)) + "  " +
                     amount(static_cast<double>(done) / seconds) + "/s  [" + bar + "]  ";
  // The name as far as there is room: a line that wraps could not be cleared.
  const std::size_t room = columns() - 1;
  const std::string name = base::escapeControls(name_);
  if (line.size() + name.size() <= room) line += name;
  std::fprintf(stderr, "%s%s", kClearLine, line.substr(0, room).c_str());
}

std::function<std::function<void(std::uint64_t)>(const std::string&, std::uint64_t)> bars(
    bool are_wanted) {
  return [are_wanted](const std::string& path, std::uint64_t size) {
    const auto bar = std::make_shared<Progress>(path.substr(path.rfind('/') + 1), size, are_wanted);
    return [bar](std::uint64_t done) { bar->show(done); };
  };
}

}  // namespace output
