#pragma once

#include <gtest/gtest.h>

#include <utility>

#include "plugin/src/Setup.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/RecordingPeer.h"
#include "tests/support/RecordingSession.h"

namespace stowline {

using namespace support;

/// A receiver in memory with the module's setting in its default, and the record of what the module
/// does with it.
struct Receiver {
  Receiver() {
    host.configuration.branches.insert("plugins.qorpanel.stowline");
    setMedium("/media/hdd/");
  }

  void setMedium(const std::string& root) {
    host.configuration.values["plugins.qorpanel.stowline.backuprestorepath"] = root;
  }

  Record record;
  FailingJournal journal{record};
  RecordingHost host{journal};
  RecordingSession session{journal};
};

struct ModuleTest : ::testing::Test, Receiver {};

/// One of the module's screens, on top of a receiver.
template <class ScreenType>
struct Opened {
  template <class... Arguments>
  explicit Opened(Receiver& receiver, Arguments&&... arguments)
      : peer(receiver.journal),
        screen(receiver.host, peer, receiver.session, std::forward<Arguments>(arguments)...) {}

  RecordingPeer peer;
  ScreenType screen;
};

}  // namespace stowline
