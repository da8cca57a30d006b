#include "command/preview/JsonReport.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

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

void JsonReport::add(const tarball::Member& member) {
  begin();
  json_.addItem(jsonOf(member));
}

void JsonReport::finish(Preview& preview) {
  begin();
  json_.close();
  json_.add("count", preview.members);
  json_.add("unpacked", preview.unpacked);
  json_.add("damage", textOrNull(preview.damage));
  if (preview.restore) {
    addRestore(*preview.restore);
  } else {
    json_.add("restore", Json());
  }
  json_.close();
}

/// Opens the list of members before the first of them, or at the end: an error before that leaves
/// nothing printed.
void JsonReport::begin() {
  if (std::exchange(has_begun_, true)) return;
  json_.openObject();
  json_.add("file", escapeInvalidUtf8(file_.string()));
  json_.openList("members");
}

void JsonReport::addRestore(Restore& restore) {
  json_.openObject("restore");
  json_.add("receiver", escapeInvalidUtf8(restore.receiver.string()));
  json_.add("model", escapeInvalidUtf8(restore.rehearsal.model));
  json_.add("archive", escapeInvalidUtf8(restore.rehearsal.archive));
  json_.add("refused", textOrNull(restore.rehearsal.refusal));
  json_.add("not_unpacked", jsonOf(restore.rehearsal.plan.torn));
  json_.openList("changes");
  for (const Change& change : restore.changes) json_.addItem(jsonOf(change));
  json_.close();
  json_.add("totals", totalsOf(restore.changes));
  json_.add("commands", jsonOf(restore.rehearsal.commands));
  if (restore.differences) {
    json_.openList("differences");
    restore.differences->show(restore.changes,
                              [this](const Difference& found) { json_.addItem(jsonOf(found)); });
    json_.close();
  }
  json_.close();
}

}  // namespace preview
