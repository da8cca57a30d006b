#include "desk/drawing/Shown.h"

#include <nlohmann/json.hpp>

namespace desk::drawing {
namespace {

using Json = nlohmann::ordered_json;

/// What stands for the type of a message box.
constexpr struct {
  const char* type;
  const char* sign;
} kSigns[] = {{"info", "i"}, {"error", "!"}, {"yesno", "?"}};

void addRow(Shown& shown, const std::string& text, const std::string& description,
            const std::string& picture) {
  shown.rows.push_back({"", text, description, picture});
}

void addRows(Shown& shown, const Json& frame) {
  const Json pictures = frame.value("pictures", Json::array());
  for (std::size_t index = 0; index < frame.at("rows").size(); ++index) {
    const Json& row = frame.at("rows").at(index);
    addRow(shown, row.at(0), row.size() > 1 ? row.at(1).get<std::string>() : "",
           index < pictures.size() ? pictures.at(index).get<std::string>() : "");
  }
  shown.selected = frame.at("selected").get<std::size_t>();
}

void addPackages(Shown& shown, const Json& packages) {
  shown.list = "list";
  shown.has_cursor = false;
  for (const Json& package : packages) {
    addRow(shown, package.at("name"), package.at("state"), "");
    if (package.at("state") != "waiting") shown.selected = shown.rows.size() - 1;
  }
}

}  // namespace

Shown shownBy(const Json& frame, std::optional<int> seconds_left) {
  Shown shown{.screen = frame.at("screen"),
              .title = frame.at("title"),
              .texts = frame.at("widgets"),
              .list = frame.value("list", std::string("list")),
              .rows = {}};
  addRows(shown, frame);
  if (frame.contains("text")) shown.texts["text"] = frame.at("text");
  for (const auto& [type, sign] : kSigns) {
    if (frame.value("type", std::string()) == type) shown.texts["type"] = sign;
  }
  if (frame.contains("timeout")) {
    shown.texts["timeout"] = seconds_left ? std::to_string(*seconds_left) + " s" : "";
  }
  if (frame.contains("running")) {
    shown.texts["status"] = frame.at("running").get<bool>() ? "running" : "finished";
    shown.shows_end = true;
  }
  if (frame.contains("packages")) addPackages(shown, frame.at("packages"));
  return shown;
}

}  // namespace desk::drawing
