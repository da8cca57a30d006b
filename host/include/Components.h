#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/include/IpkgComponent.h"
#include "host/include/Widgets.h"

namespace host {

/// Makes the components of the framework, each as its constructor of that name does. Every
/// operation raises what the framework's constructor raises.
class Components {
 public:
  virtual ~Components() = default;

  virtual std::shared_ptr<StaticText> makeStaticText(const std::string& text) = 0;
  virtual std::shared_ptr<Label> makeLabel(const std::string& text) = 0;
  virtual std::shared_ptr<List> makeList(const Value::List& entries) = 0;
  virtual std::shared_ptr<MenuList> makeMenuList(const std::vector<std::string>& rows) = 0;
  virtual std::shared_ptr<ActionMap> makeActionMap(const ActionMapping& mapping) = 0;

  /// As makeActionMap; such a map is also handed the number keys.
  virtual std::shared_ptr<ActionMap> makeNumberActionMap(const ActionMapping& mapping) = 0;

  virtual std::shared_ptr<ComConsole> makeComConsole() = 0;
  virtual std::shared_ptr<IpkgComponent> makeIpkgComponent() = 0;

  /// Loads the picture at the absolute `path`, from the cache when `cached`. Returns null when
  /// there is no such picture.
  virtual ObjectRef loadPixmap(const std::string& path, bool cached) = 0;
};

}  // namespace host
