#include "desk/play/ScriptPlayer.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <stdexcept>

#include "desk/play/TextFrame.h"

namespace desk {

void ScriptPlayer::play(Supervisor& supervisor, const std::vector<std::string>& words) {
  print(supervisor.firstFrame());
  for (const std::string& word : words) {
    const std::optional<Channel::Message> frame = supervisor.press(word);
    if (!frame) throw std::runtime_error(word + ": the shown screen has no such row");
    print(*frame);
  }
}

void ScriptPlayer::onEvent(const Channel::Message& event) {
  if (format_ == FrameFormat::json) {
    output_ << event.dump() << std::endl;
    return;
  }
  output_ << "\n*** " << event.at("event").get<std::string>();
  if (event.contains("text")) output_ << ": " << event.at("text").get<std::string>();
  output_ << std::endl;
}

void ScriptPlayer::print(const Channel::Message& frame) {
  output_ << (format_ == FrameFormat::json ? frame.dump() + "\n" : textFrame(frame)) << std::flush;
  if (take_) take_(frame);
}

}  // namespace desk
