#pragma once

#include <optional>
#include <string>
#include <utility>

#include "base/Descriptor.h"

namespace desk {

/// One end of the socket between the GUI process and its supervisor, which carries lines.
class Channel {
 public:
  explicit Channel(base::Descriptor socket) : socket_(std::move(socket)) {}

  /// Sends a line. A peer that has gone is no error: receiving tells.
  void send(const std::string& line);

  /// Waits for a line. Returns nothing when the peer has gone.
  std::optional<std::string> receive();

  /// Returns a line that has already been read with an earlier one, if there is one.
  std::optional<std::string> receiveRead();

  /// Whether there is such a line.
  bool hasRead() const { return unread_.find('\n') != std::string::npos; }

  int descriptor() const { return socket_.number(); }

 private:
  bool readMore();

  base::Descriptor socket_;
  std::string unread_;
};

}  // namespace desk
