#pragma once

#include <iosfwd>

#include "gui/Channel.h"

namespace desk {

/// How frames are printed: as boxes of text, or as one JSON object a line.
enum class FrameFormat { text, json };

/// Prints frames and events in their order.
class FramePrinter {
 public:
  FramePrinter(FrameFormat format, std::ostream& output) : format_(format), output_(output) {}

  void printFrame(const Channel::Message& frame);
  void printEvent(const Channel::Message& event);

 private:
  FrameFormat format_;
  std::ostream& output_;
};

}  // namespace desk
