#include "command/preview/JsonReport.h"

#include <array>
#include <cstdio>
#include <ostream>

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

JsonReport::JsonReport(const std::filesystem::path& file, std::ostream& out)
    : out_(out), object_({{"file", escapeInvalidUtf8(file.string())}}) {}

void JsonReport::add(const tarball::Member& member) {
  if (written_ == 0) openList(object_["members"], 4);
  write(jsonOf(member));
}

void JsonReport::finish(Preview& preview) {
  if (written_ == 0) openList(object_["members"], 4);
  closeList();
  object_["count"] = preview.members;
  object_["unpacked"] = preview.unpacked;
  object_["damage"] = textOrNull(preview.damage);
  object_["restore"] = Json();
  if (preview.restore) addRestore(*preview.restore);
  out_ << object_.dump(2).substr(written_) << "\n";
}

void JsonReport::addRestore(Restore& restore) {
  Json& json = object_["restore"];
  json["receiver"] = escapeInvalidUtf8(restore.receiver.string());
  json["model"] = escapeInvalidUtf8(restore.rehearsal.model);
  json["archive"] = escapeInvalidUtf8(restore.rehearsal.archive);
  json["refused"] = textOrNull(restore.rehearsal.refusal);
  json["not_unpacked"] = jsonOf(restore.rehearsal.plan.torn);
  openList(json["changes"], 6);
  for (const Change& change : restore.changes) write(jsonOf(change));
  closeList();
  json["totals"] = totalsOf(restore.changes);
  json["commands"] = jsonOf(restore.rehearsal.commands);
  if (!restore.differences) return;
  openList(json["differences"], 6);
  restore.differences->show(restore.changes,
                            [this](const Difference& found) { write(jsonOf(found)); });
  closeList();
}

/// Writes the object up to where the first element of its last value, a new list, would stand.
void JsonReport::openList(Json& list, std::size_t depth) {
  list = Json::array();
  const std::string text = object_.dump(2);
  const std::size_t end = text.rfind(']');
  out_ << text.substr(written_, end - written_);
  written_ = end;
  depth_ = depth;
  has_elements_ = false;
}

/// Writes an element of the open list.
void JsonReport::write(const Json& element) {
  const std::string line = "\n" + std::string(depth_, ' ');
  std::string text = line + element.dump(2);
  for (auto at = text.find('\n', 1); at != std::string::npos; at = text.find('\n', at + 1)) {
    text.replace(at, 1, line);
  }
  out_ << (has_elements_ ? "," : "") << text;
  has_elements_ = true;
}

void JsonReport::closeList() {
  if (has_elements_) out_ << "\n" << std::string(depth_ - 2, ' ');
}

}  // namespace preview
