#include "desk/play/TextFrame.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

namespace desk {
namespace {

using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

constexpr std::size_t kWidth = 76;
constexpr std::size_t kTextWidth = kWidth - 4;

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

/// Returns `text` with every control character as "\xNN", so that it stays on its line.
std::string printable(const std::string& text) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20 && byte != 0x7F) {
      result += character;
    } else {
      result += std::string("\\x") + kDigits[byte >> 4U] + kDigits[byte & 0x0FU];
    }
  }
  return result;
}

/// Adds `text` as one line, or as several when it is wider than the box; `indent` goes before each
/// but the first, and `start` before that one.
void addLine(Lines& lines, const std::string& text, const std::string& start = "",
             const std::string& indent = "") {
  std::string line = start;
  for (const char character : printable(text)) {
    const bool starts_character = (static_cast<unsigned char>(character) & 0xC0U) != 0x80U;
    if (starts_character && shownWidth(line) == kTextWidth) {
      lines.push_back(line);
      line = indent;
    }
    line += character;
  }
  lines.push_back(line);
}

void addText(Lines& lines, const std::string& text) {
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) addLine(lines, line);
}

void addRows(Lines& lines, const Json& frame) {
  const int selected = frame.at("selected");
  int index = 0;
  for (const Json& row : frame.at("rows")) {
    const std::string description = row.at(1);
    addLine(lines, row.at(0), index == selected ? "> " : "  ", "  ");
    if (!description.empty()) addLine(lines, description, "    ", "    ");
    ++index;
  }
}

void addPackages(Lines& lines, const Json& frame) {
  if (!frame.contains("packages")) return;
  const std::string indent(9, ' ');
  for (const Json& package : frame.at("packages")) {
    addLine(lines, package.at("name"), padded(package.at("state"), indent.size()), indent);
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
  return printable(text);
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
  for (const std::string& line : content(frame)) text += "| " + padded(line, kTextWidth) + " |\n";
  return text + edge("");
}

}  // namespace desk
