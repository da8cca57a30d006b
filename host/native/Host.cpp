#include "host/native/Host.h"

#include <iostream>

#include "host/native/Model.h"

namespace native {
namespace {

[[noreturn]] void refuse(const std::string& what) {
  throw host::Error("RuntimeError", "there is no GUI here: " + what);
}

}  // namespace

Host::Host(host::OperatingSystem& os, const std::string& settings)
    : os_(os), config_(settings, {"plugins.qorpanel"}) {}

void Host::bind(const host::Binding& /*binding*/) {}

host::Components& Host::components() {
  refuse("components");
}

host::ChannelDatabase& Host::channels() {
  refuse("channel database");
}

void Host::print(const std::string& line) {
  std::cout << line << std::endl;
}

std::string Host::resolveFilename(host::Scope /*scope*/, const std::string& relative) {
  return "/usr/lib/enigma2/python/Plugins/" + relative;
}

std::string Host::deviceName() {
  return readModel(os_);
}

void Host::clearPluginList() {
  refuse("plugin registry");
}

void Host::readPluginList(const std::string& /*directory*/) {
  refuse("plugin registry");
}

}  // namespace native
