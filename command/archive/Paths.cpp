#include "Paths.h"

#include <climits>
#include <cstdio>

#include "native/ShownText.h"

namespace tarball {
namespace {

bool isControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7f;
}

/// Whether one of the control characters U+0080 to U+009F is there, which take two bytes in UTF-8.
bool isUpperControl(std::string_view text, std::size_t start) {
  return text[start] == '\xc2' && (static_cast<unsigned char>(text[start + 1]) & 0xe0U) == 0x80;
}

std::string escaped(char byte) {
  char text[5];
  std::snprintf(text, sizeof text, "\\x%02x",
                static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return text;
}

}  // namespace

std::vector<std::string_view> componentsOf(std::string_view path) {
  std::vector<std::string_view> components;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t slash = path.find('/', start);
    const std::size_t end = slash == std::string_view::npos ? path.size() : slash;
    const std::string_view name = path.substr(start, end - start);
    if (!name.empty() && name != ".") components.push_back(name);
    start = end + 1;
  }
  return components;
}

std::string joined(const std::vector<std::string_view>& components) {
  std::string path;
  for (const std::string_view name : components) {
    if (!path.empty()) path += '/';
    path += name;
  }
  return path;
}

std::string shownPath(const std::string& path) {
  if (path.size() > PATH_MAX) return shownPath(path.substr(0, PATH_MAX)) + "...";
  const std::string text = native::shownText(path);
  std::string shown;
  for (std::size_t position = 0; position < text.size(); ++position) {
    const char byte = text[position];
    if (isUpperControl(text, position)) {
      shown += escaped(byte) + escaped(text[++position]);
    } else if (isControl(static_cast<unsigned char>(byte))) {
      shown += escaped(byte);
    } else {
      shown += byte;
    }
  }
  return shown;
}

}  // namespace tarball
