#include "desk/supervisor/Record.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "base/Files.h"

namespace desk {

Record::Record(const std::filesystem::path& path) : path_(path) {
  if (path.empty()) return;
  file_ = base::Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (!file_) {
    throw std::runtime_error("cannot write " + path.string() + ": " + std::strerror(errno));
  }
}

void Record::append(const std::string& text) const {
  if (!file_) return;
  std::string line;
  for (const char character : text) line += character == '\n' ? "\\n" : std::string(1, character);
  line += '\n';
  base::writeAll(file_.number(), line, path_);
}

}  // namespace desk
