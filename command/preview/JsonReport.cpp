#include "command/preview/JsonReport.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "base/Escape.h"

namespace preview {
namespace {

using Json = nlohmann::ordered_json;
using base::escapeInvalidUtf8;

std::string octalMode(unsigned mode) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04o", mode);
  return text.data();
}

/// Returns `text`, null when there is none.
Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(escapeInvalidUtf8(text));
}

Json jsonOf(const tarball::Member& member) {
  return {{"path", escapeInvalidUtf8(member.path)},
          {"type", wordOf(member.type)},
          {"mode", octalMode(member.mode)},
          {"size", stateOf(member).size},
          {"modified", member.modified},
          {"uid", member.uid},
          {"gid", member.gid},
          {"link", textOrNull(member.link)}};
}

Json jsonOf(const std::optional<State>& state) {
  if (!state) return {};
  return {{"type", wordOf(state->type)},
          {"size", state->size},
          {"mode", octalMode(state->mode)},
          {"link", textOrNull(state->link)}};
}

Json jsonOf(const Change& change) {
  return {{"action", wordOf(change.action)},
          {"path", escapeInvalidUtf8(change.path)},
          {"old", jsonOf(change.before)},
          {"new", jsonOf(change.after)}};
}

Json totalsOf(const Changes& changes) {
  Json totals = Json::object();
  for (const auto& [action, word] : kActions) {
    const Total total = totalOf(changes, action);
    totals[word] = {{"paths", total.count}, {"old_size", total.before}, {"new_size", total.after}};
  }
  return totals;
}

Json jsonOf(const Difference& difference) {
  return {{"path", escapeInvalidUtf8(difference.path)},
          {"diff", textOrNull(difference.text)},
          {"unshown", textOrNull(std::string(difference.reason))}};
}

Json jsonOf(const std::vector<std::string>& texts) {
  Json json = Json::array();
  for (const std::string& text : texts) json.push_back(escapeInvalidUtf8(text));
  return json;
}

}  // namespace

JsonReport::JsonReport(std::filesystem::path file, std::ostream& out)
    : file_(std::move(file)), out_(out) {}

/// Writes what stands before the members, once the archive can be read.
void JsonReport::begin() {
  if (line_.size() > 1) return;
  open(nullptr, '{');
  write("file", escapeInvalidUtf8(file_.string()));
  open("members", '[');
}

void JsonReport::add(const tarball::Member& member) {
  begin();
  write(nullptr, jsonOf(member));
}

void JsonReport::finish(Preview& preview) {
  begin();
  close(']');
  write("count", preview.members);
  write("unpacked", preview.unpacked);
  write("damage", textOrNull(preview.damage));
  if (preview.restore) {
    write(*preview.restore);
  } else {
    write("restore", Json());
  }
  close('}');
  out_ << "\n";
}

void JsonReport::write(Restore& restore) {
  open("restore", '{');
  write("receiver", escapeInvalidUtf8(restore.receiver.string()));
  write("model", escapeInvalidUtf8(restore.rehearsal.model));
  write("archive", escapeInvalidUtf8(restore.rehearsal.archive));
  write("refused", textOrNull(restore.rehearsal.refusal));
  write("not_unpacked", jsonOf(restore.rehearsal.plan.torn));
  open("changes", '[');
  for (const Change& change : restore.changes) write(nullptr, jsonOf(change));
  close(']');
  write("totals", totalsOf(restore.changes));
  write("commands", jsonOf(restore.rehearsal.commands));
  if (restore.differences) {
    open("differences", '[');
    restore.differences->show(restore.changes, [this](const Difference& difference) {
      write(nullptr, jsonOf(difference));
    });
    close(']');
  }
  close('}');
}

/// Begins an object or a list, which is a value as of write().
void JsonReport::open(const char* key, char bracket) {
  place(key);
  out_ << bracket;
  line_ += "  ";
  is_first_ = true;
}

void JsonReport::close(char bracket) {
  line_.resize(line_.size() - 2);
  if (!is_first_) out_ << line_;
  out_ << bracket;
  is_first_ = false;
}

/// Writes a value: that of a key, or without one an element of a list.
void JsonReport::write(const char* key, const Json& value) {
  std::string text = value.dump(2);
  for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    text.replace(at, 1, line_);
  }
  place(key);
  out_ << text;
}

/// Writes what stands before a value.
void JsonReport::place(const char* key) {
  if (!is_first_) out_ << ',';
  is_first_ = false;
  if (line_.size() > 1) out_ << line_;  // the object itself stands before the first newline
  if (key) out_ << '"' << key << "\": ";
}

}  // namespace preview
