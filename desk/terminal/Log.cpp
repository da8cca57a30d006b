#include "desk/terminal/Log.h"

#include <iterator>
#include <string>
#include <vector>

namespace desk::terminal {
namespace {

/// How many entries are kept: more than any terminal has lines.
constexpr std::size_t kMostEntries = 1000;

/// How far the further lines of a long entry are set in.
constexpr int kIndent = 2;

}  // namespace

void Log::add(const std::string& mark, const std::string& text, Ink ink) {
  entries_.push_back({mark + text, ink});
  if (entries_.size() > kMostEntries) entries_.pop_front();
}

void Log::draw(Canvas& canvas, const Area& area) const {
  canvas.box(area, "Log");
  const Area inside = area.inside();
  int y = inside.y + inside.height;
  for (auto entry = entries_.rbegin(); entry != entries_.rend() && y > inside.y; ++entry) {
    std::vector<std::string> lines =
        canvas.lettering().wrapped(entry->text, inside.width - kIndent);
    if (lines.empty()) lines.emplace_back();
    for (auto line = lines.rbegin(); line != lines.rend() && y > inside.y; ++line) {
      const bool is_first = std::next(line) == lines.rend();
      canvas.write(inside.x + (is_first ? 0 : kIndent), --y, *line, entry->ink, inside.width);
    }
  }
}

}  // namespace desk::terminal
