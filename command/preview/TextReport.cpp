#include "command/preview/TextReport.h"

#include <array>
#include <ctime>
#include <ostream>
#include <utility>

#include "base/Escape.h"
#include "command/archive/Paths.h"

namespace preview {
namespace {

using tarball::shownPath;

/// Returns permissions as ls(1) shows them: "rwxr-xr-x".
std::string symbolicMode(unsigned mode) {
  std::string text = "rwxrwxrwx";
  for (std::size_t at = 0; at < text.size(); ++at) {
    if ((mode & (0400U >> at)) == 0) text[at] = '-';
  }
  for (unsigned at = 0; at < 3; ++at) {  // set-user-ID, set-group-ID and sticky
    char& shown = text[3 * at + 2];
    if ((mode & (04000U >> at)) != 0) shown = (shown == 'x' ? "sst" : "SST")[at];
  }
  return text;
}

/// Returns a time as local time, or as its seconds where no calendar has it.
std::string timeText(std::int64_t seconds) {
  if (!std::in_range<std::time_t>(seconds)) return std::to_string(seconds);
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  std::array<char, 64> text{};
  if (!localtime_r(&time, &local) ||
      std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &local) == 0) {
    return std::to_string(seconds);
  }
  return text.data();
}

std::string sizeText(std::uint64_t bytes) {
  return output::sizeText(static_cast<long long>(bytes));
}

/// Returns what is on one side of a change; its permissions only where they are what changes.
std::string sideText(const std::optional<State>& side, const std::optional<State>& other) {
  if (!side) return "-";
  std::string text = isFile(side) ? sizeText(side->size) : wordOf(side->type);
  if (other && side->type == other->type && side->mode != other->mode) {
    text += " " + symbolicMode(side->mode);
  }
  return text;
}

void printChanges(const Changes& changes, std::ostream& out) {
  output::Table table({{"ACTION"}, {"OLD", true}, {"NEW", true}, {"PATH"}});
  for (const Change& change : changes) {
    const bool is_changed = change.action == Action::change || change.action == Action::keep;
    table.add({wordOf(change.action),
               sideText(change.before, is_changed ? change.after : change.before),
               sideText(change.after, is_changed ? change.before : change.after),
               shownPath(change.path)});
  }
  if (!changes.empty()) table.print(out);
  output::Table totals({{"TOTAL"}, {"PATHS", true}, {"OLD", true}, {"NEW", true}});
  for (const auto& [action, word] : kActions) {
    const Total total = totalOf(changes, action);
    if (total.count == 0) continue;
    totals.add({word, std::to_string(total.count), sizeText(total.before), sizeText(total.after)});
  }
  out << "\n";
  totals.print(out);
}

void printRestore(const Restore& restore, std::ostream& out) {
  out << "\non " << base::escapeControls(restore.receiver.string()) << ", a "
      << base::escapeControls(restore.rehearsal.model) << ", as "
      << base::escapeControls(restore.rehearsal.archive) << ":\n";
  if (!restore.rehearsal.refusal.empty()) {
    out << restore.rehearsal.refusal << "\n";
    return;
  }
  for (const std::string& archive : restore.rehearsal.plan.torn) {
    out << "nothing is unpacked, the shell takes the name apart: " << base::escapeControls(archive)
        << "\n";
  }
  printChanges(restore.changes, out);
  if (totalOf(restore.changes, Action::blocked).count > 0) {
    out << "\ntar cannot replace what is blocked, and may leave out all that follows it\n";
  }
  out << "\nthe restore runs (what commands but rm and tar change is not shown above):\n";
  for (const std::string& command : restore.rehearsal.commands) {
    out << "  " << base::escapeControls(command) << "\n";
  }
}

/// Returns a text, with its tabs, as it can be shown on a terminal.
std::string escaped(const std::string& text) {
  std::string shown;
  std::size_t start = 0;
  for (auto end = text.find_first_of("\t\n"); end != std::string::npos;
       end = text.find_first_of("\t\n", start)) {
    shown += base::escapeControls(text.substr(start, end - start)) + text[end];
    start = end + 1;
  }
  return shown + base::escapeControls(text.substr(start));
}

}  // namespace

void TextReport::add(const tarball::Member& member) {
  members_.add(
      {characterOf(member.type) + symbolicMode(member.mode), sizeText(stateOf(member).size),
       timeText(member.modified),
       shownPath(member.path) + (member.link.empty() ? "" : " -> " + shownPath(member.link))});
}

void TextReport::finish(Preview& preview) {
  if (preview.members > 0) members_.print(out_);
  members_ = output::Table({});
  out_ << output::counted(preview.members, "member") << ", " << sizeText(preview.unpacked)
       << " unpacked\n";
  if (!preview.restore) {
    out_ << "what a restore would do on a receiver is shown with --against DIR\n";
    return;
  }
  printRestore(*preview.restore, out_);
  if (!preview.restore->differences) return;
  out_ << "\n";
  preview.restore->differences->show(preview.restore->changes, [this](const Difference& found) {
    if (found.reason.empty()) {
      out_ << (escape_ ? escaped(found.text) : found.text);
    } else {
      out_ << "# " << shownPath(found.path) << ": " << found.reason << "\n";
    }
  });
}

}  // namespace preview
