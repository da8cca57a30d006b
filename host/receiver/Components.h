#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/include/Components.h"
#include "host/receiver/Names.h"

namespace receiver {

/// A C++ object that stands for one of the framework's.
class Proxy {
 public:
  explicit Proxy(Reference object) : object_(std::move(object)) {}
  virtual ~Proxy() = default;

  const Reference& object() const { return object_; }

 private:
  Reference object_;
};

/// A widget that stands for one of the framework's.
template <class Widget>
class WidgetProxy : public Widget, public Proxy {
 public:
  using Proxy::Proxy;
  void* native_handle() const override { return object().get(); }
};

class LabelProxy : public WidgetProxy<host::Label> {
 public:
  using WidgetProxy::WidgetProxy;
  void setText(const std::string& text) override { invoke<"setText">(object(), text); }
};

class ListProxy : public WidgetProxy<host::List> {
 public:
  using WidgetProxy::WidgetProxy;
  void setList(const host::Value::List& entries) override { invoke<"setList">(object(), entries); }
  host::Value getCurrent() override { return rowOf(invoke<"getCurrent">(object()).get()); }
};

class MenuListProxy : public WidgetProxy<host::MenuList> {
 public:
  using WidgetProxy::WidgetProxy;
  void setList(const std::vector<std::string>& rows) override {
    invoke<"setList">(attribute<"l">(object()), rows);
  }
  host::Value getCurrent() override { return rowOf(invoke<"getCurrent">(object()).get()); }
};

class ComConsoleProxy : public host::ComConsole, public Proxy {
 public:
  using Proxy::Proxy;
};

class IpkgComponentProxy : public host::IpkgComponent, public Proxy {
 public:
  IpkgComponentProxy(const Names& names, Reference object)
      : Proxy(std::move(object)), names_(names) {}
  void addCallback(const host::IpkgCallback& callback) override;
  void startCmd(host::IpkgCommand command) override;

 private:
  const Names& names_;
};

/// Returns the framework's own value of a command: IpkgComponent.CMD_INSTALL or CMD_UPDATE.
Reference ipkgCommand(const Names& names, host::IpkgCommand command);

/// Makes the framework's components through the bound classes.
class Components : public host::Components {
 public:
  explicit Components(const Names& names) : names_(names) {}

  std::shared_ptr<host::StaticText> makeStaticText(const std::string& text) override;
  std::shared_ptr<host::Label> makeLabel(const std::string& text) override;
  std::shared_ptr<host::List> makeList(const host::Value::List& entries) override;
  std::shared_ptr<host::MenuList> makeMenuList(const std::vector<std::string>& rows) override;
  std::shared_ptr<host::ActionMap> makeActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ActionMap> makeNumberActionMap(const host::ActionMapping& mapping) override;
  std::shared_ptr<host::ComConsole> makeComConsole() override;
  std::shared_ptr<host::IpkgComponent> makeIpkgComponent() override;
  host::ObjectRef loadPixmap(const std::string& path, bool cached) override;

 private:
  std::shared_ptr<host::ActionMap> makeMap(const Reference& type,
                                           const host::ActionMapping& mapping);

  const Names& names_;
};

}  // namespace receiver
