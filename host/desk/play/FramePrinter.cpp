#include "FramePrinter.h"

#include <ostream>

#include "TextFrame.h"

namespace desk {

void FramePrinter::printEvent(const Channel::Message& event) {
  if (format_ == FrameFormat::json) {
    output_ << event.dump() << std::endl;
    return;
  }
  output_ << "\n*** " << event.at("event").get<std::string>();
  if (event.contains("text")) output_ << ": " << event.at("text").get<std::string>();
  output_ << std::endl;
}

void FramePrinter::printFrame(const Channel::Message& frame) {
  output_ << (format_ == FrameFormat::json ? frame.dump() + "\n" : textFrame(frame)) << std::flush;
}

}  // namespace desk
