#include "TextFrame.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace desk {
namespace {

using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

constexpr std::size_t kWidth = 76;

/// The colour keys that a screen may label, with the keys that press them.
constexpr const char* kColourKeys[] = {"red", "green", "yellow", "blue"};

/// Returns how many characters `text` (UTF-8) shows.
std::size_t shownWidth(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string padded(const std::string& text, std::size_t width) {
  const std::size_t shown = shownWidth(text);
  return shown < width ? text + std::string(width - shown, ' ') : text;
}

void addText(Lines& lines, const std::string& text) {
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
}

void addRows(Lines& lines, const Json& frame) {
  const int selected = frame.at("selected");
  int index = 0;
  for (const Json& row : frame.at("rows")) {
    const std::string description = row.at(1);
    lines.push_back((index == selected ? "> " : "  ") + row.at(0).get<std::string>());
    if (!description.empty()) lines.push_back("    " + description);
    ++index;
  }
}

void addPackages(Lines& lines, const Json& frame) {
  if (!frame.contains("packages")) return;
  for (const Json& package : frame.at("packages")) {
    lines.push_back(padded(package.at("state"), 9) + package.at("name").get<std::string>());
  }
}

void addRunning(Lines& lines, const Json& frame) {
  if (!frame.contains("running")) return;
  lines.emplace_back(frame.at("running").get<bool>() ? "(running)" : "(finished)");
}

void addColourKeys(Lines& lines, const Json& frame) {
  std::string legend;
  for (const char* colour : kColourKeys) {
    const std::string label = frame.at("widgets").value(std::string("key_") + colour, "");
    if (!label.empty()) legend += std::string("[") + colour + "] " + label + "   ";
  }
  if (legend.empty()) return;
  lines.emplace_back();
  lines.push_back(legend);
}

Lines content(const Json& frame) {
  Lines lines;
  addText(lines, frame.at("widgets").value("messagetext", ""));
  addText(lines, frame.value("text", ""));
  addRows(lines, frame);
  addPackages(lines, frame);
  addRunning(lines, frame);
  addColourKeys(lines, frame);
  return lines;
}

/// Returns the title as the box's upper edge shows it, with the kind of a message behind it.
std::string heading(const Json& frame) {
  std::string text = frame.at("title");
  if (text.empty()) text = frame.at("screen");
  if (text.empty()) text = "(the menu is closed)";
  if (frame.contains("type")) text += " [" + frame.at("type").get<std::string>() + "]";
  return text;
}

std::string edge(const std::string& text) {
  const std::string start = text.empty() ? "+" : "+-- " + text + " ";
  const std::size_t used = shownWidth(start);
  return start + std::string(used < kWidth - 1 ? kWidth - 1 - used : 0, '-') + "+\n";
}

}  // namespace

std::string textFrame(const Json& frame) {
  const std::string key = frame.at("key");
  std::string text = key.empty() ? "\n" : "\n[" + key + "]\n";
  text += edge(heading(frame));
  for (const std::string& line : content(frame)) text += "| " + padded(line, kWidth - 4) + " |\n";
  return text + edge("");
}

}  // namespace desk
