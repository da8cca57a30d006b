#pragma once

#include <httplib.h>

#include "base/Descriptor.h"

namespace desk::web {

/// An HTTP server on the loopback interface with one request a connection. These are bounded,
/// whoever is at their other end: in their number, in what a request may bring, and in how long it
/// may take to come and an answer to go. Those beyond the number wait in the system's own queue.
class Http : public httplib::Server {
 public:
  /// Binds to `port`, to any free one for 0. Raises std::runtime_error when it cannot, and
  /// base::SystemError.
  explicit Http(int port);

  int port() const { return port_; }

  /// Ends listening: requests that have not come are not waited for, and each part of an answer
  /// for a second at most. The server has to be listening.
  void close();

 private:
  bool process_and_close_socket(socket_t socket) override;

  base::Descriptor closing_;  ///< readable when the server closes
  int port_;
};

}  // namespace desk::web
