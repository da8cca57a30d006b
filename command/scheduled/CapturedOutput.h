#pragma once

#include <string>

#include "host/native/Descriptor.h"

namespace scheduled {

/// Keeps what commands print off the terminal, and off the mail that a timer's output becomes, for
/// as long as it lives.
class CapturedOutput {
 public:
  /// Raises plain::Error ("OSError") when there is no room for the output.
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  /// Returns the last line that was printed, "" for none.
  std::string lastLine() const;

 private:
  native::Descriptor file_;
  native::Descriptor output_;
  native::Descriptor errors_;
};

}  // namespace scheduled
