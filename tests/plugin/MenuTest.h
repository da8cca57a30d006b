#pragma once

#include <memory>
#include <string>

#include "tests/plugin/Receiver.h"
#include "tests/plugin/flows/Expected.h"

namespace stowline {

/// What every press of a row begins with.
inline const std::string kSelected = "self[\"menu\"].getCurrent()\n";

/// A receiver on which the main menu can be opened.
struct MenuTest : ModuleTest {
  /// Opens the menu of this type, as a user finds it, and forgets the operations so far.
  void openMenu(const std::string& type) {
    opened = std::make_unique<Opened>(*this, "Stowline", "/plugin"_t, type);
    opened->finishLayout();
    record.take();
  }

  const Opened& menu() { return *opened; }
  Object& rows() { return opened->list("menu").rows; }

  /// Puts the cursor on the row with this key, in place of whatever the menu shows.
  void select(const Object& key) {
    rows() = host::list({host::tuple({key, "title"_t, "description"_t, Object(), Object()})});
  }

  std::unique_ptr<Opened> opened;
};

}  // namespace stowline
