#include "tests/support/MemorySystem.h"

#include <algorithm>
#include <cerrno>

#include "base/SystemError.h"

namespace support {
namespace {

base::SystemError missing(const std::string& path) {
  return {ENOENT, path};
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

void MemorySystem::addDirectory(const std::string& path, const std::vector<std::string>& names) {
  directories_[path] = names;
}

void MemorySystem::addFile(const std::string& path, long long size) {
  auto* listing = listingOfParent(path);
  if (listing && std::ranges::count(*listing, nameOf(path)) == 0) listing->push_back(nameOf(path));
  files_[path] = {.size = size, .lines = {}};
}

void MemorySystem::addText(const std::string& path, const std::vector<std::string>& lines) {
  addFile(path);
  files_[path].lines = lines;
}

void MemorySystem::dropFile(const std::string& path) {
  files_.erase(path);
  if (auto* listing = listingOfParent(path)) std::erase(*listing, nameOf(path));
}

bool MemorySystem::has(const std::string& path) const {
  return files_.contains(path) || directories_.contains(path);
}

int MemorySystem::system(const std::string& command) {
  return shell(command);
}

std::vector<std::string> MemorySystem::popen(const std::string& command) {
  return outputs[command];
}

std::vector<std::string> MemorySystem::open(const std::string& path) {
  return file(path).lines;
}

std::vector<std::string> MemorySystem::listdir(const std::string& path) {
  const auto directory = directories_.find(path);
  if (directory == directories_.end()) throw missing(path);
  return directory->second;
}

bool MemorySystem::exists(const std::string& path) {
  return has(path);
}

long long MemorySystem::fileSize(const std::string& path) {
  return file(path).size;
}

void MemorySystem::makedirs(const std::string& path) {
  addDirectory(path);
}

void MemorySystem::remove(const std::string& path) {
  if (!files_.contains(path)) throw missing(path);
  dropFile(path);
}

void MemorySystem::chmod(const std::string& path, int /*mode*/) {
  if (!has(path)) throw missing(path);
}

plain::LocalTime MemorySystem::localtime() {
  return now;
}

const MemorySystem::File& MemorySystem::file(const std::string& path) const {
  if (!files_.contains(path)) throw missing(path);
  return files_.at(path);
}

std::vector<std::string>* MemorySystem::listingOfParent(const std::string& path) {
  const auto parent = directories_.find(path.substr(0, path.rfind('/')));
  return parent == directories_.end() ? nullptr : &parent->second;
}

}  // namespace support
