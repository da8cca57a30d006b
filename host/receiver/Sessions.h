#pragma once

#include <memory>

#include "host/include/Session.h"
#include "host/receiver/Peer.h"

namespace receiver {

/// The session of a screen: whatever its attribute "session" is at each use.
class ScreenSession : public host::Session {
 public:
  /// `opener`: the session that the screen is constructed with.
  ScreenSession(const Names& names, const Peer& peer, Reference opener)
      : names_(names), peer_(peer), opener_(std::move(opener)) {}

  /// Hands over the session that the screen is constructed with; from then on the screen's own
  /// attribute holds it.
  Reference takeOpener() { return std::move(opener_); }

  std::unique_ptr<host::OpenedDialog> open(const host::Dialog& dialog) override;
  std::unique_ptr<host::OpenedDialog> openWithCallback(const host::Answer& callback,
                                                       const host::Dialog& dialog) override;

 private:
  std::unique_ptr<host::OpenedDialog> opened(const char* operation, Arguments arguments,
                                             const host::Dialog& dialog);

  const Names& names_;
  const Peer& peer_;
  Reference opener_;
};

}  // namespace receiver
