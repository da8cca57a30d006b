#include "command/preview/Contents.h"

#include "base/Files.h"
#include "base/SystemError.h"

namespace preview {

Contents::Contents(const base::Root& receiver, const std::string& path) : path_(path) {
  try {
    file_ = receiver.open(path);
  } catch (const base::SystemError&) {
    verdict_ = Verdict::unreadable;
  }
}

void Contents::compare(std::string_view bytes) {
  if (verdict_ != Verdict::same) return;
  if (buffer_.size() < bytes.size()) buffer_.resize(bytes.size());
  try {
    const std::size_t length = base::readSome(file_.number(), buffer_.data(), bytes.size(), path_);
    if (std::string_view(buffer_.data(), length) != bytes) verdict_ = Verdict::different;
  } catch (const base::SystemError&) {
    verdict_ = Verdict::unreadable;
  }
}

}  // namespace preview
