#include "Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Table.h"

namespace output {
namespace {

/// How often the bar is drawn; what is done sooner gets none.
constexpr std::chrono::milliseconds kBetweenBars(200);

constexpr std::size_t kWidth = 20;

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
  std::fprintf(stderr, "%s[%s] %3d%%  %s of %s  %s/s  %s", kClearLine, bar.c_str(),
               static_cast<int>(part * 100), sizeText(static_cast<long long>(done)).c_str(),
               sizeText(static_cast<long long>(size_)).c_str(),
               sizeText(static_cast<long long>(static_cast<double>(done) / seconds)).c_str(),
               lineOf(name_).c_str());
}

}  // namespace output
