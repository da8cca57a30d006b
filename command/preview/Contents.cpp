#include "Contents.h"

#include <unistd.h>

#include <cerrno>

#include "host/Error.h"

namespace preview {

Contents::Contents(const native::Root& receiver, const std::string& path) {
  try {
    file_ = receiver.open(path);
  } catch (const host::Error&) {
    verdict_ = Verdict::unreadable;
  }
}

void Contents::compare(std::string_view bytes) {
  if (verdict_ != Verdict::same) return;
  if (buffer_.size() < bytes.size()) buffer_.resize(bytes.size());
  if (fill(bytes.size()) && std::string_view(buffer_.data(), bytes.size()) != bytes) {
    verdict_ = Verdict::different;
  }
}

/// Reads so many bytes. Returns false, with a verdict, when there are fewer.
bool Contents::fill(std::size_t size) {
  for (std::size_t length = 0; length < size;) {
    const ssize_t count = read(file_.number(), buffer_.data() + length, size - length);
    if (count > 0) {
      length += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      verdict_ = count == 0 ? Verdict::different : Verdict::unreadable;
      return false;
    }
  }
  return true;
}

}  // namespace preview
