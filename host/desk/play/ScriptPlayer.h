#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "FramePrinter.h"
#include "supervisor/Supervisor.h"

namespace desk {

/// A front end that presses the keys of a script and prints what a viewer would see.
class ScriptPlayer : public Events {
 public:
  ScriptPlayer(FrameFormat format, std::ostream& output) : printer_(format, output) {}

  /// Prints the first frame, then one after every word. Raises std::runtime_error when the
  /// shown screen has no row that a word selects, and what the supervisor raises.
  void play(Supervisor& supervisor, const std::vector<std::string>& words);

  void onEvent(const Channel::Message& event) override { printer_.printEvent(event); }

 private:
  FramePrinter printer_;
};

}  // namespace desk
