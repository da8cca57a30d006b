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

Json totalsOf(const std::vector<Change>& changes) {
  Json totals = Json::object();
  for (const auto& [action, word] : kActions) {
    const Total total = totalOf(changes, action);
    totals[word] = {{"paths", total.count}, {"old_size", total.before}, {"new_size", total.after}};
  }
  return totals;
}

Json jsonOf(const Restore& restore) {
  Json json = {{"receiver", escapeInvalidUtf8(restore.receiver.string())}};
  json["model"] = escapeInvalidUtf8(restore.rehearsal.model);
  json["archive"] = escapeInvalidUtf8(restore.rehearsal.archive);
  json["refused"] = textOrNull(restore.rehearsal.refusal);
  json["not_unpacked"] = Json::array();
  for (const std::string& archive : restore.rehearsal.plan.torn) {
    json["not_unpacked"].push_back(escapeInvalidUtf8(archive));
  }
  json["changes"] = Json::array();
  for (const Change& change : restore.changes) json["changes"].push_back(jsonOf(change));
  json["totals"] = totalsOf(restore.changes);
  json["commands"] = Json::array();
  for (const std::string& command : restore.rehearsal.commands) {
    json["commands"].push_back(escapeInvalidUtf8(command));
  }
  return json;
}

}  // namespace

Json jsonOf(const Preview& preview) {
  Json json = {{"file", escapeInvalidUtf8(preview.file.string())}};
  json["members"] = Json::array();
  for (const tarball::Member& member : preview.members) json["members"].push_back(jsonOf(member));
  json["count"] = preview.members.size();
  json["unpacked"] = preview.unpacked;
  json["damage"] = textOrNull(preview.damage);
  json["restore"] = preview.restore ? jsonOf(*preview.restore) : Json();
  return json;
}

Json jsonOf(const Difference& difference) {
  return {{"path", escapeInvalidUtf8(difference.path)},
          {"diff", textOrNull(difference.text)},
          {"unshown", textOrNull(difference.reason)}};
}

}  // namespace preview
