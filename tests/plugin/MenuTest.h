#pragma once

#include <memory>
#include <string>

#include "plugin/src/Stowline.h"
#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {

/// What every press of a row begins with.
inline const std::string kSelected = "self[\"menu\"].getCurrent()\n";

/// A receiver on which the main menu can be opened.
struct MenuTest : ModuleTest {
  /// Opens the menu of this type, as a user finds it, and forgets the operations so far.
  void openMenu(const std::string& type) {
    opened = std::make_unique<Opened<Stowline>>(*this, "/plugin", type);
    opened->peer.finishLayout();
    record.take();
  }

  Stowline& menu() { return opened->screen; }
  RecordingPeer& peer() { return opened->peer; }
  RecordingList& rows() { return opened->peer.widget<RecordingList>("menu"); }

  /// Puts the cursor on the row with this key, in place of whatever the menu shows.
  void select(const host::Value& key) {
    rows().entries.assign(1, host::Value::List{key, "title", "description", {}, {}});
  }

  std::unique_ptr<Opened<Stowline>> opened;
};

}  // namespace stowline
