#include "command/preview/Content.h"

#include <string_view>

#include "base/Files.h"
#include "base/SystemError.h"

namespace preview {
Action Content::compare(const base::Root& receiver, const std::string& path) {
  base::Descriptor file;
  std::string own;
  for (std::string_view bytes = head();; bytes = reader_.read()) {
    try {
      if (!file) file = receiver.open(path);
      own.resize(bytes.size());
      own.resize(base::readSome(file.number(), own.data(), own.size(), path));
    } catch (const base::SystemError&) {
      return Action::unreadable;
    }
    if (own != bytes) return Action::change;
    if (bytes.empty()) return Action::same;
  }
}

const std::string* Content::text() {
  return head().size() > kLargestText ? nullptr : &head_;
}

const std::string& Content::head() {
  while (head_.size() <= kLargestText) {
    const std::string_view bytes = reader_.read();
    if (bytes.empty()) break;
    head_ += bytes;
  }
  return head_;
}

}  // namespace preview
