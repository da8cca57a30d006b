#include "desk/model/ConsoleLayer.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "host/native/ShownText.h"
#include "host/plain/Error.h"

namespace desk {

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
          {"/bin/sh", "-c", command}, [this](const std::string& text) { output_ += text; },
          [this](int exit_status) {
            if (exit_status != 0) output_ += "[exit status " + std::to_string(exit_status) + "]\n";
            runNext();
          });
      return;
    } catch (const plain::Error& error) {
      output_ += error.what() + std::string("\n");
    }
  }
  running_ = false;
}

void ConsoleLayer::handleKey(const std::string& key) {
  if (!running_ && (key == "ok" || key == "exit")) close({});
}

void ConsoleLayer::addTo(Json& frame) const {
  frame["text"] = native::shownText(output_);
  frame["running"] = running_;
}

}  // namespace desk
