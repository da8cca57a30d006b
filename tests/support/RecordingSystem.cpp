#include "tests/support/RecordingSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace support {
namespace {

host::Error missing(const std::string& path) {
  return {"OSError", "[Errno 2] No such file or directory: '" + path + "'", ENOENT};
}

std::string octal(int mode) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%#o", static_cast<unsigned>(mode));
  return digits;
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

void RecordingSystem::addDirectory(const std::string& path, const std::vector<std::string>& names) {
  directories_[path] = names;
}

void RecordingSystem::addFile(const std::string& path, long long size) {
  auto* listing = listingOfParent(path);
  if (listing && std::ranges::count(*listing, nameOf(path)) == 0) listing->push_back(nameOf(path));
  files_[path] = {.size = size, .lines = {}};
}

void RecordingSystem::addText(const std::string& path, const std::vector<std::string>& lines) {
  addFile(path);
  files_[path].lines = lines;
}

void RecordingSystem::dropFile(const std::string& path) {
  files_.erase(path);
  if (auto* listing = listingOfParent(path)) std::erase(*listing, nameOf(path));
}

bool RecordingSystem::has(const std::string& path) const {
  return files_.contains(path) || directories_.contains(path);
}

int RecordingSystem::system(const std::string& command) {
  journal_.note("os.system(" + quoted(command) + ")");
  return shell(command);
}

std::vector<std::string> RecordingSystem::popen(const std::string& command) {
  journal_.note("os.popen(" + quoted(command) + ").readlines()");
  return outputs[command];
}

std::vector<std::string> RecordingSystem::open(const std::string& path) {
  journal_.note("open(" + quoted(path) + ")");
  return file(path).lines;
}

std::vector<std::string> RecordingSystem::listdir(const std::string& path) {
  journal_.note("os.listdir(" + quoted(path) + ")");
  const auto directory = directories_.find(path);
  if (directory == directories_.end()) throw missing(path);
  return directory->second;
}

bool RecordingSystem::exists(const std::string& path) {
  journal_.note("os_path.exists(" + quoted(path) + ")");
  return has(path);
}

std::string RecordingSystem::join(const std::string& directory, const std::string& name) {
  journal_.note("os_path.join(" + quoted(directory) + ", " + quoted(name) + ")");
  return directory + (directory.ends_with('/') ? "" : "/") + name;
}

long long RecordingSystem::fileSize(const std::string& path) {
  journal_.note("os_stat(" + quoted(path) + ").st_size");
  return file(path).size;
}

void RecordingSystem::makedirs(const std::string& path) {
  journal_.note("os.makedirs(" + quoted(path) + ")");
  addDirectory(path);
}

void RecordingSystem::remove(const std::string& path) {
  journal_.note("os.remove(" + quoted(path) + ")");
  if (!files_.contains(path)) throw missing(path);
  dropFile(path);
}

void RecordingSystem::chmod(const std::string& path, int mode) {
  journal_.note("os.chmod(" + quoted(path) + ", " + octal(mode) + ")");
  if (!has(path)) throw missing(path);
}

host::LocalTime RecordingSystem::localtime() {
  journal_.note("localtime()");
  return now;
}

const RecordingSystem::File& RecordingSystem::file(const std::string& path) const {
  if (!files_.contains(path)) throw missing(path);
  return files_.at(path);
}

std::vector<std::string>* RecordingSystem::listingOfParent(const std::string& path) {
  const auto parent = directories_.find(path.substr(0, path.rfind('/')));
  return parent == directories_.end() ? nullptr : &parent->second;
}

}  // namespace support
