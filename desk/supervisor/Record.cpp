#include "desk/supervisor/Record.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace desk {

Record::Record(const std::filesystem::path& path) {
  if (path.empty()) return;
  file_ = native::Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (!file_) {
    throw std::runtime_error("cannot write " + path.string() + ": " + std::strerror(errno));
  }
}

void Record::append(const std::string& text) const {
  if (!file_) return;
  std::string line;
  for (const char character : text) line += character == '\n' ? "\\n" : std::string(1, character);
  line += '\n';
  if (write(file_.number(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
    throw std::runtime_error(std::string("cannot write a record: ") + std::strerror(errno));
  }
}

}  // namespace desk
