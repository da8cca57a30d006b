#include "tests/desk/terminal/Pictures.h"

#include <clocale>
#include <ostream>
#include <stdexcept>

namespace desk::terminal {

Lettering utf8() {
  if (!std::setlocale(LC_CTYPE, "C.UTF-8")) throw std::runtime_error("there is no locale C.UTF-8");
  return Lettering(Lettering::Charset::utf8);
}

Lettering ascii() {
  return Lettering(Lettering::Charset::ascii);
}

Json rows(const std::vector<std::array<std::string, 2>>& texts) {
  return texts;
}

Json manyRows(int count) {
  std::vector<std::array<std::string, 2>> texts;
  for (int row = 0; row < count; ++row) texts.push_back({"row " + std::to_string(row), ""});
  return rows(texts);
}

Json list(int count, int selected) {
  return frame({{"rows", manyRows(count)}, {"selected", selected}});
}

std::string manyLines(int count) {
  std::string text;
  for (int line = 0; line < count; ++line) text += "line " + std::to_string(line) + "\n";
  return text;
}

Json frame(const Json& more) {
  Json result = {{"key", ""},
                 {"screen", "Screen"},
                 {"title", ""},
                 {"widgets", Json::object()},
                 {"rows", Json::array()},
                 {"selected", 0}};
  if (!more.is_null()) result.update(more);
  return result;
}

std::string shown(const Canvas& canvas) {
  std::string text = "\n";
  for (int row = 0; row < canvas.size().rows; ++row) text += canvas.line(row) + "\n";
  return text;
}

std::string pictureOf(const Json& frame, Size size, const Lettering& lettering) {
  Television television(lettering);
  television.show(frame, kStart);
  return shown(television.picture(size, kStart).canvas);
}

std::string inInk(const Canvas& canvas, int row, Ink ink) {
  std::string text;
  for (int column = 0; column < canvas.size().columns; ++column) {
    const Cell& cell = canvas.at(column, row);
    text += cell.ink == ink ? cell.bytes : " ";
  }
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::vector<std::string> clicks(const Picture& picture) {
  std::vector<std::string> texts;
  for (const auto& [area, action] : picture.targets) {
    texts.push_back(action + " " + std::to_string(area.x) + "," + std::to_string(area.y) + " " +
                    std::to_string(area.width) + "x" + std::to_string(area.height));
  }
  return texts;
}

void PrintTo(const Glyph& glyph, std::ostream* stream) {
  *stream << '"' << glyph.bytes << "\" in " << glyph.columns;
}

}  // namespace desk::terminal
