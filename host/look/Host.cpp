#include "host/look/Host.h"

#include <utility>

namespace look {
namespace {

/// A widget whose text nobody reads.
template <class Base>
class Text : public Base {
 public:
  void setText(const std::string& /*text*/) override {}
};

class Dialog : public host::OpenedDialog {
 public:
  void setTitle(const std::string& /*title*/) override {}
};

}  // namespace

Host::Host(System& system, std::string model, const std::string& settings)
    : native::Host(system, settings), system_(system), model_(std::move(model)) {}

std::string Host::deviceName() {
  return model_.empty() ? native::Host::deviceName() : model_;
}

std::unique_ptr<host::OpenedDialog> Host::open(const host::Dialog& dialog) {
  dialogs_.push_back(dialog);
  return std::make_unique<Dialog>();
}

std::unique_ptr<host::OpenedDialog> Host::openWithCallback(const host::Answer& /*callback*/,
                                                           const host::Dialog& dialog) {
  return open(dialog);
}

std::shared_ptr<host::StaticText> Host::makeStaticText(const std::string& /*text*/) {
  return std::make_shared<Text<host::StaticText>>();
}

std::shared_ptr<host::Label> Host::makeLabel(const std::string& /*text*/) {
  return std::make_shared<Text<host::Label>>();
}

/// Only the main menu has such a list, and it is not used here.
std::shared_ptr<host::List> Host::makeList(const host::Value::List& /*entries*/) {
  throw host::Error("RuntimeError", "there is no main menu here");
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
  return makeActionMap(mapping);
}

std::shared_ptr<host::ComConsole> Host::makeComConsole() {
  return std::make_shared<host::ComConsole>();
}

std::shared_ptr<host::IpkgComponent> Host::makeIpkgComponent() {
  return std::make_shared<IpkgComponent>([this] { has_package_command_ = true; });
}

host::ObjectRef Host::loadPixmap(const std::string& /*path*/, bool /*cached*/) {
  return nullptr;
}

}  // namespace look
