#include "desk/model/ConsoleLayer.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "host/native/ShownText.h"
#include "host/plain/Error.h"

namespace desk {
namespace {

/// How much of the output is kept, in bytes.
constexpr std::size_t kKept = 100000;

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Returns where the last kKept bytes begin: at a line, or at least at a character.
std::size_t startOfKept(const std::string& output) {
  if (output.size() <= kKept) return 0;
  std::size_t start = output.size() - kKept;
  const std::size_t line = output.find('\n', start) + 1;
  if (line != 0 && line != output.size()) return line;
  while (start < output.size() && continuesCharacter(output[start])) ++start;
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
          {"/bin/sh", "-c", command}, [this](const std::string& text) { addOutput(text); },
          [this](int exit_status) {
            if (exit_status != 0) addOutput("[exit status " + std::to_string(exit_status) + "]\n");
            runNext();
          });
      return;
    } catch (const plain::Error& error) {
      addOutput(error.what() + std::string("\n"));
    }
  }
  running_ = false;
}

void ConsoleLayer::addOutput(const std::string& text) {
  output_ += text;
  if (output_.size() > 2 * kKept) output_.erase(0, startOfKept(output_));
}

void ConsoleLayer::handleKey(const std::string& key) {
  if (!running_ && (key == "ok" || key == "exit")) close({});
}

void ConsoleLayer::addTo(Json& frame) const {
  frame["text"] = native::shownText(output_.substr(startOfKept(output_)));
  frame["running"] = running_;
}

}  // namespace desk
