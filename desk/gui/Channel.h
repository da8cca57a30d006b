#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "host/native/Descriptor.h"

namespace desk {

/// One end of the socket between the GUI process and its supervisor. A message is one JSON object a
/// line. The supervisor sends
///   {"word": WORD}       a key of the remote control, or another word of the script player
///   {"show": true}       when it wants to see what has changed without a word
/// and the GUI sends
///   {"frame": FRAME}     what a viewer sees: once after its start and once after every word
///   {"missing": WORD}    in place of the frame, when there is no row that the word selects
///   {"changed": true}    when a job has changed what a viewer sees; once until it is shown
///   {"shown": FRAME}     after every "show"
///   {"idle": FRAME}      when the last running job has ended and nobody waits for that by a word
///   {"log": LINE}, {"command": COMMAND}, {"error": TEXT}   as they happen, before the frame
///   {"fatal": TEXT}      why it cannot run; it ends then
/// The "rows" of a FRAME are null when they are those of the frame sent before it: a key moves the
/// cursor of a long list far more often than its rows change.
class Channel {
 public:
  using Message = nlohmann::ordered_json;

  explicit Channel(native::Descriptor socket) : socket_(std::move(socket)) {}

  /// Sends `message`. A peer that has gone is no error: receiving tells.
  void send(const Message& message);

  /// Waits for a message. Returns nothing when the peer has gone.
  std::optional<Message> receive();

  /// Returns a message that has already been read with an earlier one, if there is one.
  std::optional<Message> receiveRead();

  /// Whether there is such a message.
  bool hasRead() const { return unread_.find('\n') != std::string::npos; }

  int descriptor() const { return socket_.number(); }

 private:
  bool readMore();

  native::Descriptor socket_;
  std::string unread_;
};

}  // namespace desk
