#include "desk/model/ConsoleLayer.h"

#include <utility>

#include "base/Escape.h"
#include "base/SystemError.h"

namespace desk {
namespace {

/// How much of the output is kept, in bytes.
constexpr std::size_t kKept = 100000;

/// Returns where the last kKept bytes begin: at a line, or at least at a character.
std::size_t startOfKept(const std::string& output) {
  if (output.size() <= kKept) return 0;
  std::size_t start = output.size() - kKept;
  const std::size_t line = output.find('\n', start) + 1;
  if (line != 0 && line != output.size()) return line;
  while (start < output.size() && base::isContinuation(output[start])) ++start;
  return start;
}

}  // namespace

ConsoleLayer::ConsoleLayer(Console console, Jobs& jobs, Observer& observer)
    : Layer("Console"), console_(std::move(console)), jobs_(jobs), observer_(observer) {
  Layer::setTitle(console_.title);
  runNext();
}

void ConsoleLayer::runNext() {
  while (next_ < console_.cmdlist.size()) {
    const std::string& command = console_.cmdlist[next_++];
    observer_.onCommand(command);
    try {
      jobs_.start(
          {"/bin/sh", "-c", command}, [this](const std::string& bytes) { addOutput(bytes); },
          [this](int exit_status) {
            addText(base::escapeInvalidUtf8(std::exchange(unread_, "")));
            if (exit_status != 0) addText("[exit status " + std::to_string(exit_status) + "]\n");
            runNext();
          });
      return;
    } catch (const base::SystemError& error) {
      addText(base::escapeInvalidUtf8(plain::toError(error).what()) + "\n");
    }
  }
  running_ = false;
}

void ConsoleLayer::addOutput(const std::string& bytes) {
  unread_ += bytes;
  const std::size_t length = base::lengthOfWhole(unread_);
  addText(base::escapeInvalidUtf8(unread_.substr(0, length)));
  unread_.erase(0, length);
}

void ConsoleLayer::addText(const std::string& text) {
  output_ += text;
  if (output_.size() <= 2 * kKept) return;
  const std::size_t start = startOfKept(output_);
  output_.erase(0, start);
  dropped_ += start;
}

void ConsoleLayer::handleKey(const std::string& key) {
  if (!running_ && (key == "ok" || key == "exit")) close({});
}

Content ConsoleLayer::content() const {
  const std::size_t start = startOfKept(output_);
  return ConsoleContent{
      .output = output_.substr(start), .dropped = dropped_ + start, .is_running = running_};
}

}  // namespace desk
