#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "desk/model/Layer.h"
#include "host/include/Dialogs.h"
#include "host/include/Screen.h"

namespace desk {

/// One of the module's own screens, and the framework's side of it.
class ScreenLayer : public Layer, public host::ScreenPeer {
 public:
  /// Constructs the screen. Raises what that raises.
  ScreenLayer(const host::ScreenClass& screen_class, host::Session& session);
  ~ScreenLayer() override;

  void finishLayout() override;
  void handleKey(const std::string& key) override;
  RowList* rowList() override;
  void addTo(Json& frame) const override;

  void init(host::Session& session) override;
  void setItem(std::string_view key, const host::ComponentPtr& component) override;
  std::shared_ptr<host::Label> label(std::string_view key) override;
  std::shared_ptr<host::List> list(std::string_view key) override;
  std::shared_ptr<host::MenuList> menuList(std::string_view key) override;
  void setAttribute(std::string_view name, const std::string& value) override;
  void appendOnLayoutFinish(const host::Action& hook) override;
  void close(const host::Value& result) override { Layer::close(result); }
  void callOperation(std::string_view name, const host::Value& argument) override;

 private:
  template <class Widget>
  std::shared_ptr<Widget> widget(std::string_view wanted) const;

  std::map<std::string, host::ComponentPtr> widgets_;
  std::vector<host::Action> on_layout_finish_;
  std::string_view skin_;
  std::unique_ptr<host::Screen> screen_;
};

}  // namespace desk
