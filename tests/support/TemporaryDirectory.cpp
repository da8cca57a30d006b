#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace support {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory()
    : path_((fs::temp_directory_path() / "stowline-test-XXXXXX").string()) {
  if (!mkdtemp(path_.data())) throw std::runtime_error("cannot make " + path_);
  path_ = fs::canonical(path_).string();
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void TemporaryDirectory::write(const std::string& name, const std::string& content) const {
  std::ofstream file(*this / name, std::ios::binary | std::ios::trunc);
  if (!(file << content << std::flush)) throw std::runtime_error("cannot write " + name);
}

std::string TemporaryDirectory::read(const std::string& name) const {
  std::ifstream file(*this / name, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

void TemporaryDirectory::makeDirectory(const std::string& name) const {
  fs::create_directories(*this / name);
}

void TemporaryDirectory::makeLink(const std::string& name, const std::string& target) const {
  fs::create_symlink(target, *this / name);
}

}  // namespace support
