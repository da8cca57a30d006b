#include "command/archive/BroughtLinks.h"

namespace tarball {
namespace {

constexpr std::size_t kRoom = 4 * 1024 * 1024;
constexpr std::size_t kNode = 64 + sizeof(std::string);  // what the set needs beside a path's bytes

}  // namespace

bool BroughtLinks::add(const std::string& path) {
  if (bytes_ + path.size() + kNode > kRoom) return false;
  if (paths_.insert(path).second) bytes_ += path.size() + kNode;
  return true;
}

bool BroughtLinks::leadTo(std::string_view path) const {
  if (paths_.empty()) return false;
  for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
       slash = path.find('/', slash + 1)) {
    if (contains(path.substr(0, slash))) return true;
  }
  return false;
}

}  // namespace tarball
