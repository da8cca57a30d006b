#include "command/preview/UnifiedDiff.h"

#include <algorithm>
#include <dtl/dtl.hpp>
#include <span>
#include <string_view>
#include <vector>

namespace preview {
namespace {

constexpr std::size_t kContext = 3;

constexpr char kRemoved = '-';
constexpr char kAdded = '+';
constexpr char kKept = ' ';

using Lines = std::vector<std::string_view>;

/// Cuts a text behind every newline.
Lines linesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    lines.push_back(text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1));
    text.remove_prefix(lines.back().size());
  }
  return lines;
}

/// A line on the way from one text to the other.
struct Step {
  char mark;
  std::string_view line;
};

using Script = std::vector<Step>;

void append(Script& script, char mark, Lines::const_iterator begin, Lines::const_iterator end) {
  for (; begin != end; ++begin) script.push_back({mark, *begin});
}

/// Adds the steps between lines of which neither the first nor the last are the same. The time that
/// it takes grows with the number of lines that do not stay, squared.
void appendMiddle(Script& script, const Lines& before, const Lines& after) {
  dtl::Diff<std::string_view> difference(before, after);
  difference.compose();
  for (const auto& [line, step] : difference.getSes().getSequence()) {
    const char mark = step.type == dtl::SES_ADD ? kAdded : kRemoved;
    script.push_back({step.type == dtl::SES_COMMON ? kKept : mark, line});
  }
}

bool isKept(const Step& step) {
  return step.mark == kKept;
}

/// Puts what is removed before what is added in its place.
void sortChanges(Script& script) {
  for (auto begin = script.begin(); begin != script.end();) {
    const auto end = std::find_if(begin, script.end(), isKept);
    std::stable_partition(begin, end, [](const Step& step) { return step.mark == kRemoved; });
    begin = std::find_if_not(end, script.end(), isKept);
  }
}

std::optional<Script> scriptOf(const Lines& before, const Lines& after) {
  const auto [old_head, new_head] = std::ranges::mismatch(before, after);
  auto old_tail = before.end();
  auto new_tail = after.end();
  while (old_tail != old_head && new_tail != new_head && old_tail[-1] == new_tail[-1]) {
    --old_tail;
    --new_tail;
  }
  const Lines removed(old_head, old_tail);
  const Lines added(new_head, new_tail);
  const bool is_replaced = !removed.empty() && !added.empty();
  if (is_replaced && removed.size() + added.size() > kMostLines) return std::nullopt;
  Script script;
  append(script, kKept, before.begin(), old_head);
  appendMiddle(script, removed, added);
  append(script, kKept, old_tail, before.end());
  sortChanges(script);
  return script;
}

/// A part of a script.
using Part = std::span<const Step>;

/// Returns the parts of the script that hunks show: the changes with their context, those that
/// would touch as one.
std::vector<Part> hunksOf(Part script) {
  std::vector<Part> hunks;
  std::size_t end = 0;  // of the last hunk
  for (std::size_t at = 0; at < script.size(); ++at) {
    if (isKept(script[at])) continue;
    std::size_t begin = at - std::min(at, kContext);
    if (!hunks.empty() && begin <= end) {
      begin = end - hunks.back().size();
      hunks.pop_back();
    }
    end = std::min(at + 1 + kContext, script.size());
    hunks.push_back(script.subspan(begin, end - begin));
  }
  return hunks;
}

/// Where one of the texts stands.
struct Position {
  char other = kKept;     ///< the mark of the lines that only the other text has
  std::size_t lines = 0;  ///< before it

  /// Goes past a part. Returns its first line, counted from 1, and the number of its lines; of
  /// none, the line before.
  std::string pass(Part part) {
    const auto count = static_cast<std::size_t>(
        std::ranges::count_if(part, [this](const Step& step) { return step.mark != other; }));
    const std::size_t first = lines + (count > 0 ? 1 : 0);
    lines += count;
    return std::to_string(first) + "," + std::to_string(count);
  }
};

}  // namespace

std::optional<std::string> unifiedHunks(const std::string& before, const std::string& after) {
  const auto script = scriptOf(linesOf(before), linesOf(after));
  if (!script) return std::nullopt;
  std::string text;
  Position old_text{kAdded};
  Position new_text{kRemoved};
  const Step* at = script->data();
  for (const Part hunk : hunksOf(*script)) {
    old_text.pass({at, hunk.data()});
    new_text.pass({at, hunk.data()});
    at = hunk.data() + hunk.size();
    text += "@@ -" + old_text.pass(hunk) + " +" + new_text.pass(hunk) + " @@\n";
    for (const auto& [mark, line] : hunk) {
      text += mark;
      text += line;
      if (!line.ends_with('\n')) text += "\n\\ No newline at end of file\n";
    }
  }
  return text;
}

}  // namespace preview
