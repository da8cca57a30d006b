#include "command/preview/Differences.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "base/Escape.h"
#include "base/Files.h"
#include "base/SystemError.h"
#include "command/preview/UnifiedDiff.h"

namespace preview {
namespace {

/// Why a file's difference is not shown.
struct Unshown {
  std::string_view reason;
};

constexpr Unshown kTooLarge{"larger than 256 KiB"};

/// Returns the content of a receiver's file. Raises Unshown.
std::string contentOf(const base::Root& receiver, const std::string& path) {
  try {
    const base::Descriptor file = receiver.open(path);
    auto content = base::readAtMost(file.number(), kLargestText, path);
    if (!content) throw kTooLarge;
    return std::move(*content);
  } catch (const base::SystemError&) {
    throw Unshown{"unreadable"};
  }
}

/// Returns the header line of one side; tools need a tab behind a name with blanks.
std::string header(const char* mark, const Change& change, bool is_there) {
  const std::string name = is_there ? base::escapeControls(change.path) : "/dev/null";
  return mark + name + (name.find(' ') == std::string::npos ? "\n" : "\t\n");
}

/// Whether a member brings or changes what lies at the change's path.
bool isBrought(const Change& change) {
  return change.member != 0 && (change.action == Action::add || change.action == Action::change);
}

/// Raises what the last call on a temporary file has failed with.
[[noreturn]] void failTexts() {
  throw base::SystemError(errno, "a temporary file");
}

}  // namespace

Differences::Differences(const std::filesystem::path& receiver)
    : receiver_(receiver), texts_(std::tmpfile()) {
  if (!texts_) failTexts();
}

void Differences::take(const Change& change, Content& content) {
  if (!isBrought(change)) return;
  const auto difference = find(change, &content);
  if (!difference) return;
  const std::string& text = difference->text;
  entries_.push_back({&change, change.member, text.size(), difference->reason});
  if (std::fwrite(text.data(), 1, text.size(), texts_.get()) != text.size()) failTexts();
}

void Differences::show(const Changes& changes, const std::function<void(const Difference&)>& show) {
  if (std::fseek(texts_.get(), 0, SEEK_SET) != 0) failTexts();
  for (const auto& [change, member, size, reason] : entries_) {
    std::string text(size, '\0');
    if (std::fread(text.data(), 1, size, texts_.get()) != size) failTexts();
    if (change->member == member && isBrought(*change)) show({change->path, text, reason});
  }
  for (const Change& change : changes) {
    if (change.action != Action::remove && change.action != Action::remove_again) continue;
    if (const auto difference = find(change, nullptr)) show(*difference);
  }
}

/// Returns the difference of a change, with its new content if there is to be any; nothing where
/// there is no difference.
std::optional<Difference> Differences::find(const Change& change, Content* content) {
  if (!isFile(change.before) && !isFile(change.after)) return std::nullopt;
  try {
    std::string text = textOf(change, content);
    if (text.empty()) return std::nullopt;
    room_ -= std::min(room_, text.size());
    return Difference{change.path, std::move(text), ""};
  } catch (const Unshown& unshown) {
    return Difference{change.path, "", unshown.reason};
  }
}

/// Raises Unshown where the difference is not to be shown.
std::string Differences::textOf(const Change& change, Content* content) const {
  if (room_ == 0) throw Unshown{"too much to show after the others"};
  for (const auto* side : {&change.before, &change.after}) {
    if (*side && !isFile(*side)) throw Unshown{"not a file on both sides"};
    if (*side && (*side)->size > kLargestText) throw kTooLarge;
  }
  static const std::string kNone;
  const std::string* after = change.after ? content->text() : &kNone;
  if (!after) throw kTooLarge;
  const std::string before = change.before ? contentOf(receiver_, change.path) : kNone;
  for (const std::string& text : {std::cref(before), std::cref(*after)}) {
    if (text.find('\0') != std::string::npos) throw Unshown{"not a text"};
  }
  const auto hunks = unifiedHunks(before, *after);
  if (!hunks) throw Unshown{"too many lines to compare"};
  if (hunks->empty()) return "";
  return header("--- ", change, change.before.has_value()) +
         header("+++ ", change, change.after.has_value()) + *hunks;
}

}  // namespace preview
