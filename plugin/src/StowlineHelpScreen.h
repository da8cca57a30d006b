#pragma once

#include <string>
#include <string_view>

#include "host/include/Host.h"
#include "host/include/Screen.h"
#include "plugin/src/TitledScreen.h"

namespace stowline {

/// Confirms the restore of a configuration and carries it out.
class StowlineHelpScreen : public TitledScreen {
 public:
  /// The screen's own layout, in the skin's XML; sizes in pixels.
  static const std::string_view skin;

  /// `restorefile`: the archive's name, to be shown. `fullrestorepath`: its absolute path.
  StowlineHelpScreen(host::Host& host, host::ScreenPeer& peer, host::Session& session,
                     std::string restorefile, std::string fullrestorepath);

  std::string restorefile;
  std::string fullrestorepath;

  /// Shows which backup will be restored.
  void createMessage();

  /// Runs the restore, whose last command ends the GUI.
  void keyGo();

  /// Closes the screen with nothing done.
  void keyClose();
};

}  // namespace stowline
