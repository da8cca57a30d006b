#include "command/preview/Content.h"

#include <string_view>

#include "base/Files.h"
#include "base/SystemError.h"

namespace preview {
namespace {

/// Opens a receiver's file. Returns no descriptor for what cannot be read.
base::Descriptor openFile(const base::Root& receiver, const std::string& path) {
  try {
    return receiver.open(path);
  } catch (const base::SystemError&) {
    return {};
  }
}

/// Returns whether `bytes` are the next ones of an open file: same, change or unreadable.
Action compareNext(const base::Descriptor& file, std::string_view bytes, const std::string& path) {
  std::string own(bytes.size(), '\0');
  try {
    own.resize(base::readSome(file.number(), own.data(), own.size(), path));
  } catch (const base::SystemError&) {
    return Action::unreadable;
  }
  return own == bytes ? Action::same : Action::change;
}

}  // namespace

Action Content::compare(const base::Root& receiver, const std::string& path) {
  std::string_view bytes = head();
  const base::Descriptor file = openFile(receiver, path);
  Action action = file ? Action::same : Action::unreadable;
  for (; action == Action::same && !bytes.empty(); bytes = reader_.read()) {
    action = compareNext(file, bytes, path);
  }
  return action;
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
