#include "desk/model/Host.h"

#include <iostream>
#include <utility>

#include "desk/model/Components.h"
#include "desk/model/Opkg.h"

namespace desk {
namespace {

/// A picture of a menu row, by its path.
class Picture : public host::Object {
 public:
  explicit Picture(std::string path) : path_(std::move(path)) {}
  std::string str() const override { return path_; }

 private:
  std::string path_;
};

template <class Widget, class Base>
std::shared_ptr<Base> makeText(const std::string& text) {
  auto widget = std::make_shared<Widget>();
  widget->setText(text);
  return widget;
}

}  // namespace

int System::system(const std::string& command) {
  observer_.onCommand(command);
  return NativeSystem::system(command);
}

std::vector<std::string> System::popen(const std::string& command) {
  observer_.onCommand(command);
  return NativeSystem::popen(command);
}

Host::Host(Jobs& jobs, Observer& observer)
    : native::Host(os_), jobs_(jobs), observer_(observer), os_(observer), channels_(os_) {}

std::string Host::translate(std::string_view text) {
  const auto found = translations_.find(text);
  return found == translations_.end() ? std::string(text) : found->second;
}

void Host::print(const std::string& line) {
  native::Host::print(line);
  observer_.onLogLine(line);
}

void Host::clearPluginList() {
  plugins_.clear();
}

void Host::readPluginList(const std::string& directory) {
  for (const char* category : {"Extensions", "SystemPlugins"}) {
    const std::string folder = directory + category;
    if (!os_.exists(folder)) continue;
    for (const std::string& name : os_.listdir(folder)) plugins_.push_back(name);
  }
  std::cout << "[PluginComponent] " << plugins_.size() << " plugins" << std::endl;
}

std::shared_ptr<host::StaticText> Host::makeStaticText(const std::string& text) {
  return makeText<StaticText, host::StaticText>(text);
}

std::shared_ptr<host::Label> Host::makeLabel(const std::string& text) {
  return makeText<Label, host::Label>(text);
}

std::shared_ptr<host::List> Host::makeList(const host::Value::List& entries) {
  auto list = std::make_shared<List>();
  list->setList(entries);
  return list;
}

std::shared_ptr<host::MenuList> Host::makeMenuList(const std::vector<std::string>& rows) {
  auto list = std::make_shared<MenuList>();
  list->setList(rows);
  return list;
}

std::shared_ptr<host::ActionMap> Host::makeActionMap(const host::ActionMapping& mapping) {
  return std::make_shared<ActionMap>(mapping);
}

std::shared_ptr<host::ActionMap> Host::makeNumberActionMap(const host::ActionMapping& mapping) {
  return std::make_shared<ActionMap>(mapping);
}

std::shared_ptr<host::ComConsole> Host::makeComConsole() {
  return std::make_shared<host::ComConsole>();
}

std::shared_ptr<host::IpkgComponent> Host::makeIpkgComponent() {
  return std::make_shared<IpkgComponent>(jobs_, observer_);
}

host::ObjectRef Host::loadPixmap(const std::string& path, bool /*cached*/) {
  if (!os_.exists(path)) return nullptr;
  return std::make_shared<Picture>(path);
}

}  // namespace desk
