#pragma once

#include <string>

#include "desk/model/Dialogs.h"
#include "desk/model/Layer.h"
#include "host/plain/Screen.h"

namespace desk {

/// One of the module's own screens, and the framework's side of it.
class ScreenLayer : public Layer {
 public:
  /// Makes the screen. Raises what that raises.
  ScreenLayer(const ModuleScreen& screen, const host::Object& session);

  std::string title() const override;
  void setTitle(const std::string& title) override;
  void finishLayout() override { screen_.screen().finishLayout(); }
  void handleKey(const std::string& key) override;
  RowList* rowList() override;
  Content content() const override;
  const std::optional<host::Object>& result() const override { return screen_.screen().result; }

 private:
  plain::OpenScreen screen_;
  std::string skin_;
};

}  // namespace desk
