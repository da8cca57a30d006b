#include "ConsoleLayer.h"

#include <utility>

#include "ShownText.h"

namespace desk {

ConsoleLayer::ConsoleLayer(host::Console console, Jobs& jobs, Observer& observer)
    : Layer("Console"), console_(std::move(console)), jobs_(jobs), observer_(observer) {
  shown_title = console_.title;
  runNext();
}

void ConsoleLayer::runNext() {
  if (next_ == console_.cmdlist.size()) {
    ++next_;
    return;
  }
  const std::string& command = console_.cmdlist[next_++];
  observer_.onCommand(command);
  jobs_.start(
      {"/bin/sh", "-c", command}, [this](const std::string& text) { output_ += text; },
      [this](int exit_status) {
        if (exit_status != 0) output_ += "[exit status " + std::to_string(exit_status) + "]\n";
        runNext();
      });
}

void ConsoleLayer::handleKey(const std::string& key) {
  if (!running() && (key == "ok" || key == "exit")) close({});
}

void ConsoleLayer::addTo(Json& frame) const {
  frame["text"] = shownText(output_);
  frame["running"] = running();
}

}  // namespace desk
