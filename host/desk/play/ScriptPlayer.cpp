#include "ScriptPlayer.h"

#include <optional>
#include <stdexcept>

namespace desk {

void ScriptPlayer::play(Supervisor& supervisor, const std::vector<std::string>& words) {
  printer_.printFrame(supervisor.firstFrame());
  for (const std::string& word : words) {
    const std::optional<Channel::Message> frame = supervisor.press(word);
    if (!frame) throw std::runtime_error(word + ": the shown screen has no such row");
    printer_.printFrame(*frame);
  }
}

}  // namespace desk
