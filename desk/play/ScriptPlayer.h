#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "desk/supervisor/Supervisor.h"

namespace desk {

/// How frames are printed: as boxes of text, or as one JSON object a line.
enum class FrameFormat { text, json };

/// A front end that presses the keys of a script and prints what a viewer would see.
class ScriptPlayer : public Events {
 public:
  /// `take` may be given to get every frame, too.
  ScriptPlayer(FrameFormat format, std::ostream& output,
               std::function<void(const Channel::Message& frame)> take = {})
      : format_(format), output_(output), take_(std::move(take)) {}

  /// Prints the first frame, then one after every word. Raises std::runtime_error when the
  /// shown screen has no row that a word selects, and what the supervisor raises.
  void play(Supervisor& supervisor, const std::vector<std::string>& words);

  void onEvent(const Channel::Message& event) override;

 private:
  void print(const Channel::Message& frame);

  FrameFormat format_;
  std::ostream& output_;
  std::function<void(const Channel::Message&)> take_;
};

}  // namespace desk
