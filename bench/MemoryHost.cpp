#include "bench/MemoryHost.h"

#include <utility>

namespace bench {
namespace {

struct Text : host::StaticText {
  void setText(const std::string&) override {}
};

struct TextLabel : host::Label {
  void setText(const std::string&) override {}
};

struct Entries : host::List {
  void setList(const host::Value::List&) override {}
  host::Value getCurrent() override { return {}; }
};

struct Rows : host::MenuList {
  void setList(const std::vector<std::string>&) override {}
  host::Value getCurrent() override { return {}; }
};

struct Packages : host::IpkgComponent {
  void addCallback(const host::IpkgCallback&) override {}
  void startCmd(host::IpkgCommand) override {}
};

struct Dialog : host::OpenedDialog {
  void setTitle(const std::string&) override {}
};

}  // namespace

host::ChannelDatabase& MemoryHost::channels() {
  throw host::Error("AttributeError", "this host has no channels");
}

std::string MemoryHost::resolveFilename(host::Scope, const std::string& relative) {
  return "/usr/lib/enigma2/python/Plugins/" + relative;
}

std::string MemoryHost::join(const std::string& directory, const std::string& name) {
  return directory + "/" + name;
}

host::LocalTime MemoryHost::localtime() {
  return {.tm_year = 2024, .tm_mon = 3, .tm_mday = 5, .tm_hour = 7, .tm_min = 4};
}

std::shared_ptr<host::StaticText> MemoryHost::makeStaticText(const std::string&) {
  return std::make_shared<Text>();
}

std::shared_ptr<host::Label> MemoryHost::makeLabel(const std::string&) {
  return std::make_shared<TextLabel>();
}

std::shared_ptr<host::List> MemoryHost::makeList(const host::Value::List&) {
  return std::make_shared<Entries>();
}

std::shared_ptr<host::MenuList> MemoryHost::makeMenuList(const Lines&) {
  return std::make_shared<Rows>();
}

std::shared_ptr<host::ActionMap> MemoryHost::makeActionMap(const host::ActionMapping&) {
  return std::make_shared<host::ActionMap>();
}

std::shared_ptr<host::ActionMap> MemoryHost::makeNumberActionMap(const host::ActionMapping&) {
  return std::make_shared<host::ActionMap>();
}

std::shared_ptr<host::ComConsole> MemoryHost::makeComConsole() {
  return std::make_shared<host::ComConsole>();
}

std::shared_ptr<host::IpkgComponent> MemoryHost::makeIpkgComponent() {
  return std::make_shared<Packages>();
}

MemoryHost::Lines MemoryHost::take(const std::string& name) {
  const auto found = next.find(name);
  return found == next.end() ? Lines{} : std::exchange(found->second, {});
}

std::shared_ptr<host::Label> MemoryPeer::label(std::string_view) {
  return std::make_shared<TextLabel>();
}

std::shared_ptr<host::List> MemoryPeer::list(std::string_view) {
  return std::make_shared<Entries>();
}

std::shared_ptr<host::MenuList> MemoryPeer::menuList(std::string_view) {
  return std::make_shared<Rows>();
}

std::unique_ptr<host::OpenedDialog> MemorySession::open(const host::Dialog&) {
  return std::make_unique<Dialog>();
}

std::unique_ptr<host::OpenedDialog> MemorySession::openWithCallback(const host::Answer&,
                                                                    const host::Dialog&) {
  return std::make_unique<Dialog>();
}

}  // namespace bench
