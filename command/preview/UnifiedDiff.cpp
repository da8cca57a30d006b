#include "command/preview/UnifiedDiff.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/Files.h"
#include "command/preview/LineScript.h"

namespace preview {
namespace {

constexpr std::size_t kContext = 3;

using Lines = std::vector<std::string>;

/// Gives equal lines equal numbers.
class Numbers {
 public:
  std::vector<int> of(Lines::const_iterator begin, Lines::const_iterator end) {
    std::vector<int> numbers;
    for (; begin != end; ++begin) {
      numbers.push_back(known_.try_emplace(*begin, static_cast<int>(known_.size())).first->second);
    }
    return numbers;
  }

 private:
  std::unordered_map<std::string_view, int> known_;
};

/// Returns the steps for the lines between those that both texts begin and end with.
std::optional<std::vector<Edit>> middleScript(const std::vector<int>& before,
                                              const std::vector<int>& after) {
  if (before.empty()) return std::vector<Edit>(after.size(), Edit::add);
  if (after.empty()) return std::vector<Edit>(before.size(), Edit::remove);
  if (before.size() + after.size() > kMostLines) return std::nullopt;
  return lineScript(before, after);
}

/// Puts what is removed before what is added in its place.
void sortChanges(std::vector<Edit>& script) {
  for (auto begin = script.begin(); begin != script.end();) {
    const auto end = std::find(begin, script.end(), Edit::keep);
    std::sort(begin, end);
    begin = std::find_if_not(end, script.end(), [](Edit edit) { return edit == Edit::keep; });
  }
}

std::optional<std::vector<Edit>> scriptOf(const Lines& before, const Lines& after) {
  const auto head = std::ranges::mismatch(before, after);
  const auto kept_before = static_cast<std::size_t>(head.in1 - before.begin());
  std::size_t kept_after = 0;
  while (kept_after < std::min(before.size(), after.size()) - kept_before &&
         before[before.size() - 1 - kept_after] == after[after.size() - 1 - kept_after]) {
    ++kept_after;
  }
  const auto tail = static_cast<std::ptrdiff_t>(kept_after);
  Numbers numbers;
  const std::vector<int> old_lines = numbers.of(head.in1, before.end() - tail);
  const auto middle = middleScript(old_lines, numbers.of(head.in2, after.end() - tail));
  if (!middle) return std::nullopt;
  std::vector<Edit> script(kept_before, Edit::keep);
  script.insert(script.end(), middle->begin(), middle->end());
  script.insert(script.end(), kept_after, Edit::keep);
  sortChanges(script);
  return script;
}

/// A part of a script: from one step up to before another.
struct Range {
  std::size_t begin;
  std::size_t end;
};

/// Returns the parts of the script that hunks show: the changes with their context, those that
/// would touch as one.
std::vector<Range> hunksOf(const std::vector<Edit>& script) {
  std::vector<Range> hunks;
  for (std::size_t at = 0; at < script.size(); ++at) {
    if (script[at] == Edit::keep) continue;
    const std::size_t begin = at - std::min(at, kContext);
    const std::size_t end = std::min(at + 1 + kContext, script.size());
    if (!hunks.empty() && begin <= hunks.back().end) {
      hunks.back().end = end;
    } else {
      hunks.push_back({begin, end});
    }
  }
  return hunks;
}

/// Writes the hunks of a script one after another.
class Writer {
 public:
  Writer(const Lines& before, const Lines& after, const std::vector<Edit>& script)
      : before_(before), after_(after), script_(script) {}

  std::string write() {
    for (const Range& hunk : hunksOf(script_)) writeHunk(hunk);
    return text_;
  }

 private:
  void writeHunk(const Range& hunk) {
    const std::size_t kept = hunk.begin - at_;  // nothing but kept lines is between two hunks
    old_ += kept;
    new_ += kept;
    at_ = hunk.begin;
    const std::size_t old_start = old_;
    const std::size_t new_start = new_;
    std::string lines;
    for (; at_ < hunk.end; ++at_) lines += nextLine(script_[at_]);
    text_ += "@@ -" + place(old_start, old_) + " +" + place(new_start, new_) + " @@\n" + lines;
  }

  std::string nextLine(Edit edit) {
    const std::string& line = edit == Edit::add ? after_[new_] : before_[old_];
    if (edit != Edit::add) ++old_;
    if (edit != Edit::remove) ++new_;
    const char* mark = edit == Edit::add ? "+" : (edit == Edit::remove ? "-" : " ");
    return mark + line + (line.ends_with('\n') ? "" : "\n\\ No newline at end of file\n");
  }

  /// Returns the first line, counted from 1, and the number of lines; of none, the line before.
  static std::string place(std::size_t start, std::size_t end) {
    return std::to_string(start + (end > start ? 1 : 0)) + "," + std::to_string(end - start);
  }

  const Lines& before_;
  const Lines& after_;
  const std::vector<Edit>& script_;
  std::string text_;
  std::size_t at_ = 0;   // in the script
  std::size_t old_ = 0;  // lines before it
  std::size_t new_ = 0;
};

}  // namespace

std::optional<std::string> unifiedHunks(const std::string& before, const std::string& after) {
  const Lines old_lines = base::linesOf(before);
  const Lines new_lines = base::linesOf(after);
  const auto script = scriptOf(old_lines, new_lines);
  if (!script) return std::nullopt;
  return Writer(old_lines, new_lines, *script).write();
}

}  // namespace preview
