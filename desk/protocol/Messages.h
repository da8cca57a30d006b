#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

#include "desk/protocol/Frame.h"
#include "desk/protocol/Word.h"

namespace desk {

/// What the supervisor asks of the GUI: an answer to a word, or, without one, what has changed
/// since the last frame.
struct Request {
  std::optional<Word> word;
};

/// A frame, and why it was sent.
struct FrameReport {
  enum class Cause {
    word,     ///< answers the start of the GUI, or a word
    request,  ///< answers a request without a word
    idle,     ///< the last running job has ended, and no word waits for that
  };

  Cause cause = Cause::word;
  Frame frame = {};
};

/// Answers a word that selects a row which is not there.
struct RowMissing {};

/// A job has changed what a viewer sees; sent once until it is shown.
struct Changed {};

/// The module has printed a line.
struct LogLine {
  std::string text;
};

/// A command is about to run in a shell of the receiver.
struct CommandStart {
  std::string text;
};

/// An error that nobody has caught, as its class and message.
struct UncaughtError {
  std::string text;
};

/// Why the GUI cannot run; it ends then.
struct Fatal {
  std::string text;
};

/// What the GUI reports to the supervisor.
using Report =
    std::variant<FrameReport, RowMissing, Changed, LogLine, CommandStart, UncaughtError, Fatal>;

/// What happens to the GUI between frames.
struct Event {
  enum class Kind { gui_killed, gui_started, error };

  Kind kind;
  std::string text = {};  ///< of an error

  friend bool operator==(const Event&, const Event&) = default;
};

/// A message that this version does not understand; what() names the part of it.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace desk
