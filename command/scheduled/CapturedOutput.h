#pragma once

#include <string>

#include "base/Descriptor.h"

namespace scheduled {

/// Keeps what commands print off the terminal, and off the mail that a timer's output becomes, for
/// as long as it lives.
class CapturedOutput {
 public:
  /// Raises base::SystemError when there is no room for the output.
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  /// Returns the last line that was printed, "" for none.
  std::string lastLine() const;

 private:
  base::Descriptor file_;
  base::Descriptor output_;
  base::Descriptor errors_;
};

}  // namespace scheduled
