#pragma once

#include <string>
#include <string_view>

#include "host/include/Host.h"
#include "host/include/Screen.h"

namespace stowline {

/// How long the module's information and error boxes stay, in seconds.
inline constexpr int kBoxSeconds = 10;

/// What the module's screens have in common: a title and translated text sources.
class TitledScreen : public host::Screen {
 public:
  using host::Screen::Screen;

  std::string title;

 protected:
  /// Sets the title, for the framework too.
  void setTitleAttribute(const std::string& text);

  /// Registers the title as a widget. A skin without one is tolerated, with a line in the log.
  void setTitleWidget();

  /// Registers a text source that shows the translation of `text`.
  void setKeyLabel(std::string_view key, std::string_view text);

  std::string translated(std::string_view text) const;
};

}  // namespace stowline
